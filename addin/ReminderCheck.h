#pragma once

#include "addin/CheckWatch.h"
#include "addin/NotesWindows.h"
#include "addin/ReminderPopups.h"
#include "addin/Standing.h"

#include <deque>
#include <exception>

namespace yrw {

/// The check for due reminders of one add-in: when it may run, what it finds and shows, and what is
/// said when it fails or has not run for long.
/// Lifetime: a member of its `AddIn`, as is all that it is given. Thread: the user-interface
/// thread.
class ReminderCheck {
public:
    ReminderCheck(Module1& module, const AddInHost& host, const Standing& standing,
                  const NotesWindows& windows, ReminderPopups& popups)
        : m_module(module), m_host(host), m_standing(standing), m_windows(windows),
          m_popups(popups) {}
    ReminderCheck(const ReminderCheck&) = delete;
    ReminderCheck& operator=(const ReminderCheck&) = delete;

    /// The add-in begins its work.
    void begin();
    /// A minute has passed; `cancel` becomes true when no check ran.
    void minutePassed(bool& cancel);
    /// Checks now; true when the check ran. A failure is reported, or, quietly, only written down.
    bool run(bool quietly);

private:
    bool showDueReminders(bool quietly);
    [[nodiscard]] std::deque<Ref<IRecord>> findDueReminders();
    [[nodiscard]] std::deque<Ref<IRecord>> waitingReminders();
    void reportFailure(const std::exception_ptr& failure, bool quietly);
    void showWhenChecked();

    Module1& m_module;
    const AddInHost& m_host;
    const Standing& m_standing;
    const NotesWindows& m_windows;
    ReminderPopups& m_popups;
    CheckWatch m_watch;
    bool m_isChecking = false;
};

} // namespace yrw
