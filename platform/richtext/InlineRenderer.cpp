#include "platform/richtext/InlineRenderer.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/Pictures.h"
#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Picture.h"
#include "platform/rtf/Reader.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace yrw::richtext {

namespace {

constexpr double kDots = 96;
constexpr double kCaptionPixels = 12;
constexpr QSizeF kPlaceholder{48, 48};
constexpr double kWidestPlaceholder = 240;
constexpr QSizeF kWidest{2112, 2112}; ///< of a picture that names no size
/// Dots of stored pictures that are decoded in one turn of the event loop, if it is more than one.
constexpr qint64 kMostTurnDots = 2LL * 1024 * 1024;
/// A picture never shows coarser than with so many dots, if it has them.
constexpr qint64 kFewestDots = 64LL * 1024;

/// A frame that a caption fits in.
QSizeF placeholder(const QString& caption) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(static_cast<int>(kCaptionPixels));
    constexpr double kMargins = 12;
    const double width = QFontMetricsF(font).horizontalAdvance(caption) + kMargins;
    return {std::clamp(width, kPlaceholder.width(), kWidestPlaceholder), kPlaceholder.height()};
}

} // namespace

InlineRenderer::InlineRenderer(const std::vector<rtf::Inline>& inlines, Target target,
                               QObject* parent)
    : QObject(parent), m_inlines(inlines), m_target(target) {
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &InlineRenderer::decodeNext);
}

InlineRenderer::~InlineRenderer() = default;

void InlineRenderer::reset() {
    m_looks.clear();
    m_waiting.clear();
    m_kept.clear();
    m_keptDots = 0;
    m_decodedCount = 0;
}

InlineRenderer::Look InlineRenderer::makeLook(const rtf::Inline& group) const {
    Look look;
    if (group.kind == rtf::InlineKind::Kept) {
        return look;
    }
    const rtf::Picture picture = rtf::pictureOf(group.raw);
    look.size = QSizeF(pixels(picture.width, kDots), pixels(picture.height, kDots));
    if (group.kind == rtf::InlineKind::Object) {
        const rtf::ObjectGroup parts = rtf::objectOf(group.raw);
        const auto object = rtf::readObject(parts.data);
        const QString shown = rtf::visibleText(group.raw, 1252).simplified();
        look.caption = shown.isEmpty() ? objectCaption(parts, object) : shown;
        if (look.size.isEmpty()) {
            look.size = QSizeF(pixels(parts.width, kDots), pixels(parts.height, kDots));
        }
        if (look.size.isEmpty() && object) {
            look.size = QSizeF(pixels(object->presentation.width, kDots),
                               pixels(object->presentation.height, kDots));
        }
    } else {
        look.caption = QStringLiteral("Drawing"); // shown where it cannot be drawn
    }
    for (const StoredPicture& each : picturesIn(group)) {
        const QSize size = sizeOf(each);
        if (size.isEmpty()) {
            continue;
        }
        look.dots = std::max(look.dots, static_cast<qint64>(size.width()) * size.height());
        if (look.size.isEmpty()) {
            look.size = QSizeF(size).boundedTo(QSizeF(size).scaled(kWidest, Qt::KeepAspectRatio));
        }
    }
    look.state = look.dots > 0 ? State::Unknown : State::Nothing;
    if (look.size.isEmpty()) {
        look.size = placeholder(look.caption);
    }
    return look;
}

InlineRenderer::Look& InlineRenderer::look(const QTextFormat& format) {
    const int id = format.intProperty(kInlineId);
    const auto known = m_looks.find(id);
    if (known != m_looks.end()) {
        return known->second;
    }
    const auto index = static_cast<std::size_t>(id);
    if (index >= m_inlines.size()) {
        // Text that is just going; its number is soon another group's.
        static Look nothing;
        nothing = Look();
        nothing.state = State::Nothing;
        return nothing;
    }
    return m_looks[id] = makeLook(m_inlines[index]);
}

/// Decodes a picture that is to be drawn, or has it wait for a turn of its own.
void InlineRenderer::prepare(int id, Look& look, qint64 shownDots, QTextDocument* document) {
    if (look.state != State::Unknown) {
        return;
    }
    const bool now = m_target == Target::Paper || m_turnDots + look.dots <= kMostTurnDots;
    if (now) {
        decodeNow(id, look, shownDots);
    } else {
        look.state = State::Waiting;
        m_waiting.push_back({id, shownDots, document});
    }
    if (m_target == Target::Screen && !m_turn.isActive()) {
        m_turn.start();
    }
}

void InlineRenderer::decodeNow(int id, Look& look, qint64 shownDots) {
    m_turnDots += look.dots;
    look.state = State::Nothing;
    qint64 room = std::min(shownDots, kMostShownDots);
    forgetOutOfView(room);
    // Where all that is in view needs more room than there is, the rest shows coarser.
    room = std::min(room, std::max(kMostKeptDots - m_keptDots, kFewestDots));
    for (const StoredPicture& each : picturesIn(rtf::at(m_inlines, id))) {
        look.picture = QPixmap::fromImage(decode(each, room));
        if (!look.picture.isNull()) {
            look.state = State::Shown;
            m_keptDots += static_cast<qint64>(look.picture.width()) * look.picture.height();
            m_kept.push_back(id);
            ++m_decodedCount;
            return;
        }
    }
}

/// A turn of the event loop for one large picture, if it is still in view.
void InlineRenderer::decodeNext() {
    m_turnDots = 0;
    while (!m_waiting.empty()) {
        const Waiting next = m_waiting.front();
        m_waiting.pop_front();
        const auto found = m_looks.find(next.id);
        if (found == m_looks.end() || found->second.state != State::Waiting) {
            continue;
        }
        Look& look = found->second;
        if (next.document == nullptr || !look.place.intersects(m_view)) {
            look.state = State::Unknown;
            continue;
        }
        decodeNow(next.id, look, next.shownDots);
        Q_EMIT next.document->documentLayout()->update(look.place);
        break;
    }
    if (!m_waiting.empty()) {
        m_turn.start();
    }
}

void InlineRenderer::forgetOutOfView(qint64 needed) {
    for (auto it = m_kept.begin(); it != m_kept.end() && m_keptDots + needed > kMostKeptDots;) {
        Look& look = m_looks[*it];
        if (m_target == Target::Screen && look.place.intersects(m_view)) {
            ++it;
            continue;
        }
        m_keptDots -= static_cast<qint64>(look.picture.width()) * look.picture.height();
        look.picture = QPixmap();
        look.state = State::Unknown;
        it = m_kept.erase(it);
    }
}

QSizeF InlineRenderer::intrinsicSize(QTextDocument* document, int, const QTextFormat& format) {
    // On paper a dot is smaller than on the screen.
    const QPaintDevice* const device = document->documentLayout()->paintDevice();
    return look(format).size * (device != nullptr ? device->logicalDpiY() / kDots : 1.0);
}

void InlineRenderer::drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int,
                                const QTextFormat& format) {
    Look& shown = look(format);
    if (shown.size.isEmpty()) {
        return;
    }
    const QSizeF onDevice =
        painter->worldTransform().mapRect(rect).size() * painter->device()->devicePixelRatioF();
    shown.place = rect;
    prepare(format.intProperty(kInlineId), shown,
            static_cast<qint64>(std::ceil(onDevice.width()) * std::ceil(onDevice.height())),
            document);
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
    painter->drawText(rect, Qt::AlignCenter | Qt::TextWrapAnywhere,
                      shown.state == State::Waiting ? QString() : shown.caption);
    painter->restore();
}

} // namespace yrw::richtext
