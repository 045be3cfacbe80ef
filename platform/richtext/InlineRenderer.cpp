#include "platform/richtext/InlineRenderer.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/Pictures.h"
#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Picture.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QTextDocument>

#include <algorithm>

namespace yrw::richtext {

namespace {

constexpr double kDots = 96;
constexpr double kCaptionPixels = 12;
constexpr QSizeF kPlaceholder{48, 48};
constexpr double kWidestPlaceholder = 240;

/// A frame that a caption fits in.
QSizeF placeholder(const QString& caption) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(static_cast<int>(kCaptionPixels));
    constexpr double kMargins = 12;
    const double width = QFontMetricsF(font).horizontalAdvance(caption) + kMargins;
    return {std::clamp(width, kPlaceholder.width(), kWidestPlaceholder), kPlaceholder.height()};
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
    look.picture = QPixmap::fromImage(decodePicture(picture.kind, picture.data));
    look.size = QSizeF(pixels(picture.width, kDots), pixels(picture.height, kDots));
    if (group.kind == rtf::InlineKind::Object) {
        addObjectLook(look, group.raw);
    } else {
        look.caption = QStringLiteral("Drawing"); // shown where it cannot be drawn
    }
    if (look.size.isEmpty()) {
        look.size = look.picture.isNull() ? placeholder(look.caption) : QSizeF(look.picture.size());
    }
    return look;
}

void InlineRenderer::addObjectLook(Look& look, const QByteArray& raw) const {
    const rtf::ObjectGroup group = rtf::objectOf(raw);
    const auto object = rtf::readObject(group.data);
    look.caption = objectCaption(group, object);
    if (look.picture.isNull() && object) {
        look.picture = QPixmap::fromImage(objectImage(*object));
    }
    if (look.size.isEmpty()) {
        look.size = QSizeF(pixels(group.width, kDots), pixels(group.height, kDots));
    }
    if (look.size.isEmpty() && object) {
        look.size = QSizeF(pixels(object->presentation.width, kDots),
                           pixels(object->presentation.height, kDots));
    }
}

const InlineRenderer::Look& InlineRenderer::look(const QTextFormat& format) {
    const int id = format.intProperty(kInlineId);
    const auto known = m_looks.find(id);
    if (known != m_looks.end()) {
        return known->second;
    }
    const auto index = static_cast<std::size_t>(id);
    if (index >= m_inlines.size()) {
        // Text that is just going; its number is soon another group's.
        static const Look nothing;
        return nothing;
    }
    return m_looks[id] = makeLook(m_inlines[index]);
}

QSizeF InlineRenderer::intrinsicSize(QTextDocument* document, int, const QTextFormat& format) {
    // On paper a dot is smaller than on the screen.
    const QPaintDevice* const device = document->documentLayout()->paintDevice();
    return look(format).size * (device != nullptr ? device->logicalDpiY() / kDots : 1.0);
}

void InlineRenderer::drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int,
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
    // In pixels of the layout: the painter of a printer counts points in its own dots.
    const QPaintDevice* const device = document->documentLayout()->paintDevice();
    QFont font = painter->font();
    font.setPixelSize(static_cast<int>(kCaptionPixels *
                                       (device != nullptr ? device->logicalDpiY() / kDots : 1.0)));
    painter->setFont(font);
    painter->setPen(QPen(Qt::gray, 1, Qt::DashLine));
    painter->drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    painter->drawText(rect, Qt::AlignCenter | Qt::TextWrapAnywhere, shown.caption);
    painter->restore();
}

} // namespace yrw::richtext
