#pragma once

#include "platform/component/Event.h"
#include "platform/forms/Form.h"

#include <array>

class QTimer;

namespace yrw {

class NotesContext;

/// The hidden window that carries the two timers; it is never shown.
///
/// Both timers start as the user's settings say, read afresh, and follow them: "CheckForReminders"
/// the minute, "CheckAutoNotes" the half second.
/// Lifetime: from its making by an `AddIn` until `end`.
class frmTimer final : public Form {
    Q_OBJECT

public:
    explicit frmTimer(NotesContext& context);

    /// Stops both timers and deletes the window: at once, or after the tick whose handler this is.
    void end();

    /// Ticks every 60000 ms.
    [[nodiscard]] QTimer& ReminderTimer() const noexcept { return *tmrMain; }
    /// Ticks every 500 ms.
    [[nodiscard]] QTimer& AutoNoteTimer() const noexcept { return *tmrWindowFocus; }
    /// Enables or disables a timer; one that runs already keeps its rhythm.
    static void setEnabled(QTimer& timer, bool enabled);
    /// Minutes that passed while reminder checking was switched off; 0 after a check that ran.
    [[nodiscard]] int minuteCounter() const noexcept { return m_minuteCounter; }
    /// The counter after one more minute; raises `kErrorOverflow` past the largest.
    [[nodiscard]] static int nextMinute(int counter);

Q_SIGNALS:
    /// A minute has passed and reminders are wanted; `cancel`, false before, tells that no check
    /// ran.
    void CheckReminders(bool& cancel);
    /// Half a second has passed.
    void CheckWindowFocus();

private:
    ~frmTimer() override;

    void Form_Initialize();
    void tmrMain_Timer();
    void tmrWindowFocus_Timer();
    void endTick();

    NotesContext& m_context;
    QTimer* tmrMain;
    QTimer* tmrWindowFocus;
    std::array<Connection, 2> m_followed;
    int m_minuteCounter = 0;
    int m_ticks = 0; ///< ticks whose handlers run right now, one within the other
    bool m_ended = false;
};

} // namespace yrw
