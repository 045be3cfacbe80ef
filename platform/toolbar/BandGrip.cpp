#include "platform/toolbar/BandGrip.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace yrw {

namespace {

constexpr int kTitleMargin = 6;

} // namespace

BandGrip::BandGrip(ToolBand& band, BandEvents& events, QWidget* parent)
    : QWidget(parent), m_band(band), m_events(events) {
    setCursor(Qt::SizeAllCursor);
}

void BandGrip::paintEvent(QPaintEvent*) {
    if (m_band.docking().floating) {
        paintTitle();
        return;
    }
    QPainter painter(this);
    QStyleOption grip;
    grip.initFrom(this);
    grip.state |= QStyle::State_Horizontal;
    style()->drawPrimitive(QStyle::PE_IndicatorToolBarHandle, &grip, &painter, this);
}

void BandGrip::paintTitle() {
    QPainter painter(this);
    QColor shade = palette().color(QPalette::WindowText);
    shade.setAlphaF(0.12F);
    painter.fillRect(rect(), shade);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect room = rect().adjusted(kTitleMargin, 0, -kTitleMargin, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_band.shownCaption(), Qt::ElideRight, room.width()));
}

void BandGrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_pressed = event->position().toPoint();
        m_dragging = false;
    }
}

void BandGrip::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed) {
        return;
    }
    const QPoint way = event->position().toPoint() - *m_pressed;
    if (!m_dragging && way.manhattanLength() >= QApplication::startDragDistance()) {
        m_dragging = true;
        m_events.dragStarted();
    }
    if (m_dragging) {
        m_events.bandDragged(m_band, event->globalPosition().toPoint(),
                             mapTo(parentWidget(), *m_pressed));
    }
}

void BandGrip::mouseReleaseEvent(QMouseEvent* event) {
    if (m_pressed && event->button() == Qt::LeftButton) {
        m_pressed.reset();
        m_events.bandDropped(m_band);
    }
}

void BandGrip::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && m_band.docking().floating) {
        m_events.bandClosed(m_band);
    }
}

} // namespace yrw
