#include "platform/forms/KeyPreview.h"

#include <QApplication>

#include <algorithm>

namespace yrw {

void Form::KeyPreview::watch() {
    static QPointer<KeyPreview> preview;
    if (!preview) {
        preview = new KeyPreview(qApp);
        qApp->installEventFilter(preview);
    }
}

bool Form::KeyPreview::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        break;
    default:
        return false;
    }
    if (!watched->isWidgetType()) {
        return false;
    }
    auto* const receiver = static_cast<QWidget*>(watched);
    auto* const key = static_cast<QKeyEvent*>(event);
    if (isClimbing(receiver, key)) {
        return false;
    }
    const Climb here = m_climb;
    const bool taken = handOn(formOf(*receiver), *key);
    m_climb = here; // other keys may have come while a handler was at work
    return taken;
}

bool Form::KeyPreview::handOn(Form* form, QKeyEvent& event) {
    const bool wasPressedHere =
        event.type() == QEvent::KeyRelease && m_pressed.value(event.key()) == form;
    if (event.type() != QEvent::KeyRelease) {
        m_pressed.insert(event.key(), form);
    }
    if (event.type() == QEvent::ShortcutOverride) {
        return form != nullptr && takeOffer(*form, event);
    }
    if (form != nullptr && event.type() == QEvent::KeyPress) {
        return takePress(*form, event);
    }
    forgetOffers(event);
    return form != nullptr && wasPressedHere && !event.isAutoRepeat() &&
           ask(*form, event, Handler::KeyUp);
}

bool Form::KeyPreview::takeOffer(Form& form, QKeyEvent& event) {
    const auto earlier = event.spontaneous() ? m_offers.end() : offerOf(form, event);
    if (earlier != m_offers.end()) {
        event.setAccepted(earlier->consumed);
        return earlier->consumed;
    }
    // Stays where it is while the handler is at work, whatever comes meanwhile.
    Offer& offer = m_offers.emplace_back(Offer{&form, event.keyCombination()});
    offer.consumed = ask(form, event, Handler::KeyDown);
    offer.asking = false;
    event.setAccepted(offer.consumed);
    return offer.consumed;
}

bool Form::KeyPreview::takePress(Form& form, const QKeyEvent& event) {
    const auto offer = offerOf(form, event);
    const bool offered = offer != m_offers.end();
    const bool consumed = offered && offer->consumed;
    if (offered && !event.spontaneous()) {
        // Copies come in the order of their offers: what is older went elsewhere.
        const auto next = std::next(offer);
        for (auto each = m_offers.begin(); each != next;) {
            each = each->asking ? std::next(each) : m_offers.erase(each);
        }
    } else {
        forgetOffers(event);
    }
    return offered ? consumed : ask(form, event, Handler::KeyDown);
}

bool Form::KeyPreview::ask(Form& form, const QKeyEvent& event, Handler handler) {
    FormKey key{event.key(), event.modifiers(), false};
    if (handler == Handler::KeyDown) {
        form.Form_KeyDown(key);
    } else {
        form.Form_KeyUp(key);
    }
    return key.consumed;
}

/// The offer that an event of the same key belongs to. What is not held back has just been offered.
Form::KeyPreview::Offers::iterator Form::KeyPreview::offerOf(const Form& form,
                                                             const QKeyEvent& event) {
    const auto belongs = [&](const Offer& offer) {
        return offer.form == &form && offer.key == event.keyCombination() && !offer.asking;
    };
    if (!event.spontaneous()) {
        return std::ranges::find_if(m_offers, belongs);
    }
    const auto last = std::find_if(m_offers.rbegin(), m_offers.rend(), belongs);
    return last == m_offers.rend() ? m_offers.end() : std::prev(last.base());
}

/// A key has arrived as a press or a release, wherever that was: its offer is over.
void Form::KeyPreview::forgetOffers(const QKeyEvent& event) {
    const bool release = event.type() == QEvent::KeyRelease;
    const auto over = [&](const Offer& offer) {
        return !offer.asking &&
               (release ? offer.key.key() == event.key() : offer.key == event.keyCombination());
    };
    if (event.spontaneous()) {
        m_offers.remove_if(over);
    } else if (const auto first = std::ranges::find_if(m_offers, over);
               !release && first != m_offers.end()) {
        m_offers.erase(first); // another one of the same key may be held back still
    }
}

/// True for an event on its way from a control to its parent.
bool Form::KeyPreview::isClimbing(QWidget* receiver, const QKeyEvent* event) {
    const bool climbing = m_climb.event == event && m_climb.type == event->type() &&
                          m_climb.next != nullptr && m_climb.next == receiver;
    m_climb = {event, event->type(), receiver->parentWidget()};
    return climbing;
}

} // namespace yrw
