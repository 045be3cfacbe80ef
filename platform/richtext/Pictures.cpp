#include "platform/richtext/Pictures.h"

#include "platform/richtext/PagePreview.h"
#include "platform/rtf/Metafile.h"
#include "platform/rtf/Reader.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QStringDecoder>

#include <algorithm>

namespace yrw::richtext {

namespace {

/// Larger pictures are not decoded: a few bytes can claim gigabytes.
constexpr qint64 kMostPixels = 64LL * 1024 * 1024;
constexpr int kTwipsPerPixel = 15;
constexpr int kWidest = 9000; ///< twips, about the text width of a page
constexpr int kPreviewLines = 12;
constexpr qsizetype kPreviewBytes = 4000;
constexpr QSize kTextPreview(420, 220);
constexpr QSize kIconPreview(120, 84);

/// Drawn at twice the size, so that it is sharp on fine screens and on paper.
QImage canvas(QSize size) {
    constexpr int kSharpness = 2;
    QImage image(size * kSharpness, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(kSharpness);
    image.fill(Qt::white);
    return image;
}

void drawFrame(QPainter& painter, QSize size) {
    painter.setPen(Qt::lightGray);
    painter.drawRect(QRectF(0.5, 0.5, size.width() - 1, size.height() - 1));
    painter.setPen(Qt::black);
}

/// What a file begins with, in a frame and at a size, with the file's name below.
QImage namedPreview(const QImage& page, const QSize& shown, const QString& path) {
    constexpr int kBelow = 24;
    const QString name = QFileInfo(path).fileName();
    QImage image = canvas(shown + QSize(0, kBelow));
    QPainter painter(&image);
    painter.drawImage(QRect(QPoint(), shown), page);
    drawFrame(painter, shown);
    painter.drawText(QRect(0, shown.height(), shown.width(), kBelow), Qt::AlignCenter,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, shown.width()));
    return image;
}

QImage textPreview(const QString& text, const QString& path) {
    constexpr int kFlags = Qt::AlignLeft | Qt::TextExpandTabs | Qt::TextWordWrap;
    const QString lines = text.trimmed().split(u'\n').mid(0, kPreviewLines).join(u'\n');
    const QRect inside(QPoint(6, 6), kTextPreview - QSize(12, 12));
    const QFont font = QGuiApplication::font();
    const int height = QFontMetrics(font).boundingRect(inside, kFlags, lines).height() + 18;
    const QSize size(kTextPreview.width(), std::clamp(height, 32, kTextPreview.height()));
    QImage image = canvas(size);
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(inside & QRect(QPoint(6, 6), size - QSize(12, 12)), kFlags, lines);
    painter.end();
    return namedPreview(image, size, path);
}

/// The desktop's icon for a kind of file; null where no icon theme has one.
QIcon iconOf(const QMimeType& type) {
    for (const QString& name :
         {type.iconName(), type.genericIconName(), QStringLiteral("application-x-generic")}) {
        if (QIcon::hasThemeIcon(name)) {
            return QIcon::fromTheme(name);
        }
    }
    return {};
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

QImage objectImage(const rtf::EmbeddedObject& object) {
    constexpr char kBitmapHeader[] = "\x28\0\0"; // and a NUL: 40 bytes long
    QImage own;
    if (object.native.startsWith("BM")) {
        own = decodeImage(object.native, "bmp");
    } else if (object.native.startsWith(QByteArrayView(kBitmapHeader, sizeof kBitmapHeader))) {
        own = decodeImage(object.native, "dib");
    }
    return own.isNull() ? decodePicture(object.presentation.kind, object.presentation.data) : own;
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
    const QByteArray beginning = data.left(kPreviewBytes);
    if (rtf::isRtf(QString::fromLatin1(beginning))) {
        return textPreview(rtf::read(QByteArrayView(data)).plainText(), path);
    }
    if (type.inherits(QStringLiteral("text/plain"))) {
        QStringDecoder decode(QStringDecoder::Utf8);
        const QString text = decode(beginning);
        return textPreview(decode.hasError() ? QString::fromLatin1(beginning) : text, path);
    }
    const QImage page = firstPage(path, type);
    return page.isNull() ? QImage() : namedPreview(page, page.size() / 2, path);
}

QImage iconPreview(const QString& path) {
    QImage image = canvas(kIconPreview);
    QPainter painter(&image);
    drawFrame(painter, kIconPreview);
    constexpr int kIcon = 48;
    const QRect iconRect((kIconPreview.width() - kIcon) / 2, 6, kIcon, kIcon);
    const QIcon icon = iconOf(QMimeDatabase().mimeTypeForFile(path));
    if (icon.isNull()) {
        painter.drawRect(iconRect.adjusted(8, 0, -8, 0));
    } else {
        icon.paint(&painter, iconRect);
    }
    const QString name = painter.fontMetrics().elidedText(
        QFileInfo(path).fileName(), Qt::ElideMiddle, kIconPreview.width() - 8);
    painter.drawText(QRect(4, kIcon + 8, kIconPreview.width() - 8, 24), Qt::AlignCenter, name);
    return image;
}

} // namespace yrw::richtext
