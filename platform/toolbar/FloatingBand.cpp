#include "platform/toolbar/FloatingBand.h"

#include "platform/toolbar/BandGrip.h"
#include "platform/toolbar/ToolIcons.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QToolButton>
#include <QWindow>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kFrame = 1;
constexpr int kCloseIcon = 12;
constexpr int kTitlePadding = 6;

int titleHeight(const QWidget& widget) {
    return std::max(widget.fontMetrics().height(), kCloseIcon) + kTitlePadding;
}

/// The place itself, or the nearest at which a window of that size is on the screen.
QPoint onScreen(const QPoint& place, const QSize& size, const QScreen& otherwise) {
    const QScreen* const found = QGuiApplication::screenAt(QRect(place, size).center());
    const QRect room = (found != nullptr ? *found : otherwise).availableGeometry();
    const auto within = [](int value, int first, int last) {
        return std::clamp(value, first, std::max(first, last));
    };
    return {within(place.x(), room.left(), room.right() + 1 - size.width()),
            within(place.y(), room.top(), room.bottom() + 1 - size.height())};
}

} // namespace

FloatingBand::FloatingBand(ToolBand& band, BandEvents& events, QWidget* toolbar)
    : QWidget(toolbar, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_band(band), m_events(events), m_title(new BandGrip(band, events, this)),
      m_close(new QToolButton(this)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setObjectName(band.key() + u"Window");
    setWindowTitle(band.shownCaption());
    m_title->setObjectName(band.key() + u"Title");
    m_title->setAccessibleName(band.shownCaption());
    m_close->setObjectName(band.key() + u"Close");
    m_close->setAccessibleName(tr("Dock %1").arg(band.shownCaption()));
    m_close->setToolTip(tr("Dock"));
    m_close->setIcon(toolIcon(QStringLiteral("window-close")));
    m_close->setIconSize(QSize(kCloseIcon, kCloseIcon));
    m_close->setAutoRaise(true);
    m_close->setFocusPolicy(Qt::NoFocus);
    connect(m_close, &QToolButton::clicked, this, [this] { m_events.bandClosed(m_band); });
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &FloatingBand::stayOver);
}

QSize FloatingBand::sizeFor(const BandBar& bar) {
    const int title = titleHeight(bar);
    const int caption = bar.fontMetrics().horizontalAdvance(bar.band().shownCaption());
    const int widest = bar.screen()->availableGeometry().width();
    const QSize tools = bar.floatingSize();
    return {
        std::min(widest, std::max(tools.width(), caption + title + 3 * kTitlePadding) + 2 * kFrame),
        tools.height() + title + 2 * kFrame};
}

void FloatingBand::setBar(BandBar& bar) {
    const QSize size = sizeFor(bar);
    const int title = titleHeight(bar);
    const int inner = size.width() - 2 * kFrame;
    if (bar.parentWidget() != this) {
        bar.setParent(this);
    }
    bar.setFloating(true);
    setFixedSize(size);
    m_title->setGeometry(kFrame, kFrame, inner, title);
    m_close->setGeometry(kFrame + inner - title, kFrame, title, title);
    m_close->raise();
    bar.setGeometry(kFrame, kFrame + title, inner, size.height() - title - 2 * kFrame);
    bar.show();
    setWindowTitle(m_band.shownCaption());
    m_title->update();
}

void FloatingBand::placeAt(const QPoint& place) {
    move(onScreen(place, size(), *parentWidget()->screen()));
}

void FloatingBand::end() {
    m_ended = true;
    // Without their names the old controls are not mistaken for new ones.
    setObjectName(QString());
    for (QWidget* const control : findChildren<QWidget*>()) {
        control->setObjectName(QString());
    }
    setShown(false);
    deleteLater();
}

void FloatingBand::acceptKeyboard(bool accept) {
    m_keyboard = accept;
    if (QWindow* const handle = windowHandle()) {
        handle->setFlag(Qt::WindowDoesNotAcceptFocus, !accept);
    }
}

void FloatingBand::setShown(bool wanted) {
    m_wanted = wanted;
    setVisible(m_wanted && !m_blocked);
    stayOver();
}

void FloatingBand::stayOver() {
    // Some window managers put a modal window over all others of its program, also over those that
    // belong to it. Windows of other programs must not be covered, so it ends with the keyboard.
    if (QWindow* const handle = windowHandle()) {
        handle->setFlag(Qt::WindowStaysOnTopHint, parentWidget()->window()->isModal() &&
                                                      QGuiApplication::focusWindow() != nullptr);
    }
}

void FloatingBand::takeKeyboard() {
    acceptKeyboard(true);
    setAttribute(Qt::WA_KeyboardFocusChange); // so that the tool that has it is marked
    activateWindow();
}

bool FloatingBand::event(QEvent* event) {
    const bool result = QWidget::event(event);
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowUnblocked) {
        m_blocked = event->type() == QEvent::WindowBlocked;
        setShown(m_wanted);
    } else if (event->type() == QEvent::WindowDeactivate) {
        acceptKeyboard(false);
    } else if (event->type() == QEvent::WindowActivate && !m_keyboard) {
        parentWidget()->window()->activateWindow(); // a window manager that gives it regardless
    }
    return result;
}

bool FloatingBand::focusNextPrevChild(bool) {
    parentWidget()->window()->activateWindow();
    return true;
}

void FloatingBand::closeEvent(QCloseEvent* event) {
    event->accept();
    if (event->spontaneous()) {
        m_events.bandClosed(m_band);
        return;
    }
    // The whole program is closing its windows. Another one may still refuse.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_ended && parentWidget()->isVisible()) {
                setShown(true);
            }
        },
        Qt::QueuedConnection);
}

void FloatingBand::contextMenuEvent(QContextMenuEvent* event) {
    const QWidget* const at = childAt(event->pos());
    if (at == nullptr || at == m_title || qobject_cast<const BandBar*>(at) != nullptr ||
        event->reason() == QContextMenuEvent::Keyboard) {
        m_events.menuWanted(event->globalPos());
    }
}

void FloatingBand::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace yrw
