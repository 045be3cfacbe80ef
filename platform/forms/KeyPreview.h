#pragma once

#include "platform/forms/Form.h"

#include <QHash>
#include <QKeyEvent>
#include <QPointer>

#include <list>

namespace yrw {

/// Turns the toolkit's key events into one `Form_KeyDown` and one `Form_KeyUp` per key.
///
/// A pressed key arrives up to three times: as an offer to override a shortcut, as the press
/// itself, and again for each parent that an unhandled event climbs to. The handler runs at the
/// first of them, since a shortcut would otherwise act before the form has seen the key.
///
/// While an assistive program listens, the toolkit holds the press back, asks that program and then
/// sends a copy, which it offers once more; further keys may be offered before the copy comes.
/// What the window system sends is spontaneous; a copy and its offer are not.
/// Lifetime: one for the process, until the application ends.
class Form::KeyPreview final : public QObject {
public:
    /// Begins to watch the keys of all forms, once.
    static void watch();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using QObject::QObject;

    enum class Handler { KeyDown, KeyUp };

    /// An offer whose press has not come yet.
    struct Offer {
        QPointer<Form> form;
        QKeyCombination key;
        bool asking = true; ///< the handler is still at work: the press comes after it
        bool consumed = false;
    };
    using Offers = std::list<Offer>;

    /// An event on its way from control to control. For comparison only: both may be gone.
    struct Climb {
        const QKeyEvent* event = nullptr;
        QEvent::Type type = QEvent::None;
        const QWidget* next = nullptr;
    };

    bool handOn(Form* form, QKeyEvent& event);
    bool takeOffer(Form& form, QKeyEvent& event);
    bool takePress(Form& form, const QKeyEvent& event);
    bool ask(Form& form, const QKeyEvent& event, Handler handler);

    [[nodiscard]] Offers::iterator offerOf(const Form& form, const QKeyEvent& event);
    void forgetOffers(const QKeyEvent& event);
    bool isClimbing(QWidget* receiver, const QKeyEvent* event);

    Offers m_offers; ///< in the order in which they came
    /// Where each key went down last: the key that closed a box is let go of over another form,
    /// which is none of that form's business.
    QHash<int, QPointer<Form>> m_pressed;
    Climb m_climb;
};

} // namespace yrw
