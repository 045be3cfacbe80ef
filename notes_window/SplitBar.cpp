#include "notes_window/SplitBar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace yrw {

namespace {

constexpr int kKeyStep = 10;
constexpr int kPageStep = 60;
const QColor kDragColour(0x80, 0x80, 0x80);

} // namespace

SplitBar::SplitBar(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::SizeVerCursor);
}

void SplitBar::setDragged(bool dragged) {
    m_dragged = dragged;
    update();
}

void SplitBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), m_dragged ? kDragColour : palette().color(QPalette::Button));
    // Three dots show that the bar can be taken.
    const QColor dot = m_dragged ? QColor(Qt::white) : palette().color(QPalette::Mid);
    const QPoint centre = rect().center();
    for (int i = -1; i <= 1; ++i) {
        painter.fillRect(QRect(centre.x() + 8 * i - 1, centre.y() - 1, 3, 3), dot);
    }
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void SplitBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_grip = event->position().toPoint().y();
        Q_EMIT mouseDown();
    }
}

void SplitBar::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) != 0) {
        Q_EMIT mouseMove(mapToParent(event->position().toPoint()).y() - m_grip);
    }
}

void SplitBar::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Q_EMIT mouseUp();
    }
}

void SplitBar::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Q_EMIT dblClick();
    }
}

void SplitBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        Q_EMIT stepped(-kKeyStep);
        break;
    case Qt::Key_Down:
        Q_EMIT stepped(kKeyStep);
        break;
    case Qt::Key_PageUp:
        Q_EMIT stepped(-kPageStep);
        break;
    case Qt::Key_PageDown:
        Q_EMIT stepped(kPageStep);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace yrw
