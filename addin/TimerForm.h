#pragma once

#include "addin/frmTimer.h"

#include <memory>

namespace yrw {

/// Holds the timer window of one add-in, from the start of its work to the end.
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class TimerForm {
public:
    /// Makes the window anew; its timers run as the settings say.
    frmTimer& start(NotesContext& context) {
        m_form.reset(new frmTimer(context));
        return *m_form;
    }
    void end() noexcept { m_form.reset(); }
    /// The window; nothing before the start and after the end.
    [[nodiscard]] frmTimer* get() const noexcept { return m_form.get(); }

    /// Both do nothing while there is no window.
    void enableReminders(bool enabled) const {
        if (m_form) {
            frmTimer::setEnabled(m_form->ReminderTimer(), enabled);
        }
    }
    void enableAutoNotes(bool enabled) const {
        if (m_form) {
            frmTimer::setEnabled(m_form->AutoNoteTimer(), enabled);
        }
    }

private:
    struct End {
        void operator()(frmTimer* form) const noexcept { form->end(); }
    };
    std::unique_ptr<frmTimer, End> m_form;
};

} // namespace yrw
