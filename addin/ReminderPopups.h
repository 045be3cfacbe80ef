#pragma once

#include "framework/IRecord.h"

#include <QPointer>
#include <QTimer>

#include <deque>
#include <exception>
#include <functional>

class QShortcut;
class QWidget;

namespace yrw {

class INotesParent;
class NotesContext;
class ShownReminders;

/// The reminder popups of one add-in: shows those that are due in a cascade with the oldest promise
/// in front, gives them the one key that reaches them from the host's window, and closes those that
/// were settled elsewhere. Which reminders are on screen the add-ins of the process share.
///
/// Lifetime: a member of its add-in. Thread: the user-interface thread.
class ReminderPopups {
public:
    /// What goes on by itself once a check is over asks and tells.
    struct Round {
        std::function<bool()> mayGoOn; ///< else what waits is left to the next check
        std::function<void(const std::exception_ptr&)> failed;
    };

    ReminderPopups(INotesParent& addIn, NotesContext& context, ShownReminders& onScreen);
    ReminderPopups(const ReminderPopups&) = delete;
    ReminderPopups& operator=(const ReminderPopups&) = delete;

    /// Shows due reminders, in their order, over the host's window (the screen without one). Each
    /// turn of the event loop shows as many as fit into 20 ms. A popup that fails is not left
    /// behind and keeps none back; its failure is told once, when all were tried: raised here
    /// where one turn was enough.
    void show(std::deque<Ref<IRecord>> due, QWidget* host, Round round);
    /// Closes the popups whose reminder was answered elsewhere or is gone, and those whose note is
    /// finished or gone. Nothing is written: who acted there has answered.
    void closeSettled();
    /// Unloads all, which answers them, and shows nothing more.
    void closeAll();

private:
    void showWaiting();
    void goOn();
    void showOne(const Ref<IRecord>& reminder);
    void forget(qint64 reminderID);
    void placeReachKey();

    INotesParent& m_addIn;
    NotesContext& m_context;
    ShownReminders& m_onScreen;         ///< of all add-ins
    std::deque<Ref<IRecord>> m_waiting; ///< have no popup yet
    Round m_round;
    QPointer<QWidget> m_host;
    QTimer m_nextTurn;
    std::exception_ptr m_failure; ///< the round's first
    bool m_hasCalled = false;     ///< the user was called in this round
    bool m_closing = false;
    QPointer<QShortcut> m_reachKey; ///< on the host's window while popups are open
};

} // namespace yrw
