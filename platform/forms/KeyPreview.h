#pragma once

#include "platform/forms/Form.h"

#include <QKeyEvent>

namespace yrw {

/// Turns the toolkit's key events into one `Form_KeyDown` and one `Form_KeyUp` per key.
///
/// A pressed key arrives up to three times: as an offer to override a shortcut, as the press
/// itself, and again for each parent that an unhandled event climbs to. The handler runs at the
/// first of them, since a shortcut would otherwise act before the form has seen the key.
class Form::KeyPreview {
public:
    /// Handles a key event sent to a control of the form; true when the control must not see it.
    template <class Down, class Up>
    bool filter(QWidget* receiver, QKeyEvent* event, Down down, Up up) {
        if (isClimbing(receiver, event)) {
            return false;
        }
        if (event->type() == QEvent::KeyRelease) {
            m_offered = 0;
            return !event->isAutoRepeat() && ask(event, up);
        }
        if (event->type() == QEvent::KeyPress && m_offered == event->key()) {
            m_offered = 0;
            return m_offerConsumed;
        }
        if (event->type() == QEvent::KeyPress) {
            m_offered = 0;
            return ask(event, down);
        }
        m_offered = event->key();
        m_offerConsumed = false;
        m_offerConsumed = ask(event, down);
        event->setAccepted(m_offerConsumed);
        return m_offerConsumed;
    }

private:
    template <class Handler>
    static bool ask(const QKeyEvent* event, Handler handler) {
        FormKey key{event->key(), event->modifiers(), false};
        handler(key);
        return key.consumed;
    }

    /// True for an event on its way from a control to its parent.
    bool isClimbing(QWidget* receiver, const QKeyEvent* event) {
        const bool climbing = m_event == event && m_type == event->type() &&
                              m_receiver != nullptr && m_receiver == receiver;
        m_event = event;
        m_type = event->type();
        m_receiver = receiver->parentWidget();
        return climbing;
    }

    const QKeyEvent* m_event = nullptr; ///< for comparison only
    QEvent::Type m_type = QEvent::None;
    QWidget* m_receiver = nullptr; ///< whom the event climbs to next; for comparison only
    int m_offered = 0;             ///< key whose offer the form has seen
    bool m_offerConsumed = false;
};

} // namespace yrw
