#include "platform/toolbar/KeyboardReturn.h"

#include <QApplication>

namespace yrw {

KeyboardReturn::KeyboardReturn(QWidget& toolbar) : QObject(&toolbar), m_toolbar(toolbar) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (isOutside(now)) {
            m_before = now;
            m_called = false;
        }
    });
}

bool KeyboardReturn::isOutside(const QWidget* control) const {
    return control != nullptr && control->window() == m_toolbar.window() && control != &m_toolbar &&
           !m_toolbar.isAncestorOf(control);
}

QWidget* KeyboardReturn::target() const {
    const auto canTake = [this](const QWidget* control) {
        return isOutside(control) && control->isEnabled() && control->isVisible() &&
               (control->focusPolicy() & Qt::TabFocus) != 0;
    };
    if (canTake(m_before)) {
        return m_before;
    }
    QWidget* next = m_toolbar.nextInFocusChain();
    while (next != &m_toolbar && !canTake(next)) {
        next = next->nextInFocusChain();
    }
    return next;
}

void KeyboardReturn::giveBack() {
    m_called = false;
    QWidget* const control = target();
    if (!control->isActiveWindow()) {
        control->activateWindow(); // a floating band has the keyboard
    }
    control->setFocus();
}

} // namespace yrw
