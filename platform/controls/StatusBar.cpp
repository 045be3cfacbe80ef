#include "platform/controls/StatusBar.h"

#include "platform/controls/PlainToolTip.h"

#include <QLabel>
#include <QMouseEvent>

namespace yrw {

StatusBar::StatusBar(QWidget* parent) : QStatusBar(parent), m_label(new QLabel(this)) {
    m_label->setObjectName(QStringLiteral("statusText"));
    m_label->setTextFormat(Qt::PlainText);
    // A long text must not widen the window.
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_label->setMinimumHeight(m_label->fontMetrics().height() + 4);
    addWidget(m_label, 1);
    setAccessibleName(tr("Status"));
}

StatusBar::~StatusBar() = default;

QString StatusBar::text() const {
    return m_label->text();
}

void StatusBar::setText(const QString& text) {
    m_label->setText(text);
}

QString StatusBar::toolTipText() const {
    return m_toolTipText;
}

void StatusBar::setToolTipText(const QString& text) {
    m_toolTipText = text;
    const QString shown = plainToolTip(text);
    setToolTip(shown);
    m_label->setToolTip(shown);
}

void StatusBar::refresh() {
    m_label->repaint();
}

void StatusBar::mouseDoubleClickEvent(QMouseEvent* event) {
    QStatusBar::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton) {
        DblClick.raise();
    }
}

} // namespace yrw
