#include "platform/richtext/Pictures.h"

#include "platform/richtext/PagePreview.h"
#include "platform/rtf/FileName.h"
#include "platform/rtf/Picture.h"
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
#include <cmath>
#include <utility>

namespace yrw::richtext {

namespace {

/// Larger pictures are not decoded: a few bytes can claim gigabytes.
constexpr qint64 kMostDots = 64LL * 1024 * 1024;
/// Nor those that need more memory before they are made smaller.
constexpr qint64 kMostBytes = 128LL * 1024 * 1024;
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

qint64 dotsOf(QSize size) {
    return static_cast<qint64>(size.width()) * size.height();
}

/// The size, made smaller in both directions where it has more dots.
QSize fitting(QSize size, qint64 mostDots) {
    if (dotsOf(size) <= mostDots) {
        return size;
    }
    const double scale = std::sqrt(double(mostDots) / double(dotsOf(size)));
    return {std::max(1, int(size.width() * scale)), std::max(1, int(size.height() * scale))};
}

/// The format of picture data, by how they begin; empty for one that notes do not hold.
QByteArray formatOf(const StoredPicture& picture) {
    switch (picture.kind) {
    case rtf::PictureKind::Png:
    case rtf::PictureKind::Jpeg:
        // What is called the one is often the other. Nothing else is looked into.
        return picture.data.startsWith("\x89PNG")        ? QByteArray("png")
               : picture.data.startsWith("\xFF\xD8\xFF") ? QByteArray("jpeg")
                                                         : QByteArray();
    case rtf::PictureKind::Dib:
    case rtf::PictureKind::Wmf:
        return QByteArrayLiteral("dib");
    default:
        return {};
    }
}

/// A stored picture as the toolkit reads it.
class PictureSource {
public:
    explicit PictureSource(const StoredPicture& picture) {
        m_buffer.setData(picture.kind == rtf::PictureKind::Wmf
                             ? rtf::bitmapInMetafile(picture.data).toByteArray()
                             : picture.data);
        const QByteArray format = formatOf(picture);
        if (!format.isEmpty()) {
            m_reader.setDevice(&m_buffer);
            m_reader.setFormat(format);
            m_reader.setAutoDetectImageFormat(false);
        }
    }
    QImageReader& reader() { return m_reader; }

private:
    QBuffer m_buffer;
    QImageReader m_reader;
};

QImage read(QImageReader& reader, qint64 mostDots) {
    const QSize size = reader.size();
    const int bits = QImage::toPixelFormat(reader.imageFormat()).bitsPerPixel();
    if (size.isValid() && (dotsOf(size) > kMostDots || dotsOf(size) * bits / 8 > kMostBytes)) {
        return {};
    }
    if (size.isValid() && dotsOf(size) > mostDots) {
        reader.setScaledSize(fitting(size, mostDots));
    }
    const QImage image = reader.read();
    return dotsOf(image.size()) <= kMostDots ? image : QImage();
}

} // namespace

std::vector<StoredPicture> picturesIn(const rtf::Inline& group) {
    constexpr char kBitmapHeader[] = "\x28\0\0"; // and a NUL: 40 bytes long
    std::vector<StoredPicture> found;
    if (group.kind == rtf::InlineKind::Kept) {
        return found;
    }
    rtf::Picture shown = rtf::pictureOf(group.raw);
    if (!shown.data.isEmpty()) {
        found.push_back({shown.kind, std::move(shown.data), false});
    }
    if (group.kind != rtf::InlineKind::Object) {
        return found;
    }
    auto object = rtf::readObject(rtf::objectOf(group.raw).data);
    if (!object) {
        return found;
    }
    constexpr qsizetype kFileHeader = 14; // before the header of the bitmap itself
    if (object->native.startsWith("BM")) {
        const qsizetype header = std::min(kFileHeader, object->native.size());
        found.push_back({rtf::PictureKind::Dib, object->native.sliced(header), true});
    } else if (object->native.startsWith(QByteArrayView(kBitmapHeader, sizeof kBitmapHeader))) {
        found.push_back({rtf::PictureKind::Dib, std::move(object->native), true});
    }
    if (!object->presentation.data.isEmpty()) {
        found.push_back({object->presentation.kind, std::move(object->presentation.data), false});
    }
    return found;
}

QSize sizeOf(const StoredPicture& picture) {
    PictureSource source(picture);
    return source.reader().size();
}

QImage decode(const StoredPicture& picture, qint64 mostDots) {
    PictureSource source(picture);
    return read(source.reader(), mostDots);
}

QImage decodeImage(const QByteArray& data, qint64 mostDots) {
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    return read(reader, mostDots);
}

QString suffixOf(const StoredPicture& picture) {
    switch (picture.kind) {
    case rtf::PictureKind::Emf:
        return QStringLiteral("emf");
    case rtf::PictureKind::Wmf:
        return QStringLiteral("wmf");
    default:
        break;
    }
    const QByteArray format = formatOf(picture);
    return format == "png"    ? QStringLiteral("png")
           : format == "jpeg" ? QStringLiteral("jpg")
                              : QString();
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
    const QSize stored = fitting(image.size(), kMostStoredDots);
    (stored == image.size() ? image
                            : image.scaled(stored, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))
        .save(&buffer, "PNG");
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
    constexpr qsizetype kLongestClass = 80;
    const QByteArray& kind =
        object && !object->className.isEmpty() ? object->className : group.className;
    return rtf::shownText(QString::fromLatin1(kind.left(kLongestClass)));
}

QImage contentPreview(const QString& path, const QByteArray& data) {
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(path, data);
    if (type.name().startsWith(QLatin1String("image/"))) {
        return decodeImage(data, kMostStoredDots);
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
