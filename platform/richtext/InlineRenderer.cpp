#include "platform/richtext/InlineRenderer.h"

#include "platform/richtext/Formats.h"
#include "platform/rtf/Picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QTextDocument>

namespace yrw::richtext {

namespace {

constexpr double kDots = 96;
constexpr QSizeF kPlaceholder{48, 48};

/// Larger pictures are not decoded: a few bytes can claim gigabytes.
constexpr qint64 kMostPixels = 64LL * 1024 * 1024;

QImage decode(const QByteArray& data) {
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isValid() && static_cast<qint64>(size.width()) * size.height() > kMostPixels) {
        return {};
    }
    return reader.read();
}

} // namespace

InlineRenderer::InlineRenderer(const std::vector<rtf::Inline>& inlines, QObject* parent)
    : QObject(parent), m_inlines(inlines) {}

InlineRenderer::~InlineRenderer() = default;

void InlineRenderer::reset() {
    m_looks.clear();
}

InlineRenderer::Look InlineRenderer::makeLook(const rtf::Inline& group) const {
    Look look;
    if (group.kind == rtf::InlineKind::Kept) {
        return look;
    }
    const rtf::Picture picture = rtf::pictureOf(group.raw);
    if (picture.kind == rtf::PictureKind::Png || picture.kind == rtf::PictureKind::Jpeg) {
        look.picture = QPixmap::fromImage(decode(picture.data));
    }
    look.size = QSizeF(pixels(picture.width, kDots), pixels(picture.height, kDots));
    if (look.size.isEmpty()) {
        look.size = look.picture.isNull() ? kPlaceholder : QSizeF(look.picture.size());
    }
    return look;
}

const InlineRenderer::Look& InlineRenderer::look(const QTextFormat& format) {
    const int id = format.intProperty(kInlineId);
    const auto known = m_looks.find(id);
    if (known != m_looks.end()) {
        return known->second;
    }
    const auto index = static_cast<std::size_t>(id);
    return m_looks[id] = index < m_inlines.size() ? makeLook(m_inlines[index]) : Look{};
}

QSizeF InlineRenderer::intrinsicSize(QTextDocument*, int, const QTextFormat& format) {
    return look(format).size;
}

void InlineRenderer::drawObject(QPainter* painter, const QRectF& rect, QTextDocument*, int,
                                const QTextFormat& format) {
    const Look& shown = look(format);
    if (shown.size.isEmpty()) {
        return;
    }
    if (!shown.picture.isNull()) {
        painter->drawPixmap(rect, shown.picture, QRectF(shown.picture.rect()));
        return;
    }
    painter->save();
    painter->setPen(QPen(Qt::gray, 1, Qt::DashLine));
    painter->drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    painter->drawText(rect, Qt::AlignCenter | Qt::TextWordWrap, shown.caption);
    painter->restore();
}

} // namespace yrw::richtext
