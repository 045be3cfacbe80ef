#include "platform/richtext/Pictures.h"

#include "platform/rtf/Metafile.h"
#include "platform/rtf/Reader.h"

#include <QBuffer>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>

#include <algorithm>

namespace yrw::richtext {

namespace {

/// Larger pictures are not decoded: a few bytes can claim gigabytes.
constexpr qint64 kMostPixels = 64LL * 1024 * 1024;
constexpr int kTwipsPerPixel = 15;
constexpr int kWidest = 9000; ///< twips, about the text width of a page
constexpr int kPreviewLines = 12;
constexpr QSize kTextPreview(420, 220);
constexpr QSize kIconPreview(120, 84);

QImage canvas(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

QImage textPreview(const QString& text) {
    QImage image = canvas(kTextPreview);
    QPainter painter(&image);
    painter.setPen(Qt::gray);
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    painter.setPen(Qt::black);
    const QStringList lines = text.split(u'\n').mid(0, kPreviewLines);
    painter.drawText(image.rect().adjusted(6, 6, -6, -6),
                     Qt::AlignLeft | Qt::TextExpandTabs | Qt::TextWordWrap, lines.join(u'\n'));
    return image;
}

} // namespace

QImage decodeImage(const QByteArray& data, const char* format) {
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.isValid() && static_cast<qint64>(size.width()) * size.height() > kMostPixels) {
        return {};
    }
    return reader.read();
}

QImage decodePicture(rtf::PictureKind kind, const QByteArray& data) {
    switch (kind) {
    case rtf::PictureKind::Png:
    case rtf::PictureKind::Jpeg:
        return decodeImage(data);
    case rtf::PictureKind::Dib:
        return decodeImage(data, "dib");
    case rtf::PictureKind::Wmf:
        return decodeImage(rtf::bitmapInMetafile(data).toByteArray(), "dib");
    default:
        return {};
    }
}

QByteArray pictureGroup(const QImage& image) {
    rtf::Picture picture;
    picture.kind = rtf::PictureKind::Png;
    const QSizeF shown = QSizeF(image.size()) / image.devicePixelRatio() * kTwipsPerPixel;
    const double scale = std::min(1.0, kWidest / std::max(1.0, shown.width()));
    picture.width = std::max(kTwipsPerPixel, static_cast<int>(shown.width() * scale));
    picture.height = std::max(kTwipsPerPixel, static_cast<int>(shown.height() * scale));
    QBuffer buffer(&picture.data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return rtf::pictureGroup(picture);
}

QString objectCaption(const rtf::ObjectGroup& group,
                      const std::optional<rtf::EmbeddedObject>& object) {
    if (object && object->className == rtf::kPackageClass) {
        if (const auto file = rtf::readPackage(object->native)) {
            return file->label;
        }
    }
    if (object && object->linked && !object->topic.isEmpty()) {
        return rtf::baseName(QString::fromLatin1(object->topic));
    }
    return QString::fromLatin1(object && !object->className.isEmpty() ? object->className
                                                                      : group.className);
}

QImage contentPreview(const QString& path, const QByteArray& data) {
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(path, data);
    if (type.name().startsWith(QLatin1String("image/"))) {
        return decodeImage(data);
    }
    const QString text = QString::fromUtf8(data);
    if (rtf::isRtf(text)) {
        return textPreview(rtf::read(QByteArrayView(data)).plainText());
    }
    return type.inherits(QStringLiteral("text/plain")) ? textPreview(text.left(4000)) : QImage();
}

QImage iconPreview(const QString& path) {
    QImage image = canvas(kIconPreview);
    QPainter painter(&image);
    const QFileInfo file(path);
    const QIcon icon = QFileIconProvider().icon(file);
    constexpr int kIcon = 48;
    const QRect iconRect((kIconPreview.width() - kIcon) / 2, 4, kIcon, kIcon);
    if (icon.isNull()) {
        painter.setPen(Qt::gray);
        painter.drawRect(iconRect.adjusted(6, 0, -6, 0));
    } else {
        icon.paint(&painter, iconRect);
    }
    painter.setPen(Qt::black);
    const QString name = painter.fontMetrics().elidedText(file.fileName(), Qt::ElideMiddle,
                                                          kIconPreview.width() - 8);
    painter.drawText(QRect(4, kIcon + 8, kIconPreview.width() - 8, 24), Qt::AlignCenter, name);
    return image;
}

} // namespace yrw::richtext
