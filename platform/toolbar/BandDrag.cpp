#include "platform/toolbar/BandDrag.h"

#include <QApplication>
#include <QKeyEvent>
#include <QRegion>

namespace yrw {

namespace {

constexpr int kLine = 3; ///< width of the outline in pixels

} // namespace

BandDrag::BandDrag()
    : m_outline(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                             Qt::WindowTransparentForInput) {
    m_outline.setObjectName(QStringLiteral("bandOutline"));
    m_outline.setAttribute(Qt::WA_ShowWithoutActivating);
    m_outline.setAttribute(Qt::WA_TransparentForMouseEvents);
    m_outline.setBackgroundRole(QPalette::Highlight);
    m_outline.setAutoFillBackground(true);
    // The last filter is asked first: a window that closes on Escape does not see the key.
    QApplication::instance()->installEventFilter(this);
}

void BandDrag::moveTo(const DropTarget& target) {
    if (m_cancelled) {
        return;
    }
    m_target = target;
    const QRect all(QPoint(), target.outline.size());
    m_outline.setGeometry(target.outline);
    m_outline.setMask(QRegion(all) - all.adjusted(kLine, kLine, -kLine, -kLine));
    m_outline.show();
}

void BandDrag::cancel() {
    m_cancelled = true;
    m_target.reset();
    m_outline.hide();
}

bool BandDrag::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::WindowBlocked) {
        cancel(); // the mouse button may be released where nobody sees it
    }
    const bool offered = type == QEvent::ShortcutOverride;
    if ((!offered && type != QEvent::KeyPress) ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) {
        return QObject::eventFilter(watched, event);
    }
    event->accept(); // so that no shortcut takes the key, and the press itself comes
    if (!offered && watched->isWidgetType()) {
        cancel();
    }
    return offered || watched->isWidgetType();
}

} // namespace yrw
