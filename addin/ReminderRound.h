#pragma once

#include <QDateTime>

#include <deque>
#include <exception>

namespace yrw {

class Clock;

/// One round of showing what a check found, which may last several turns of the event loop.
struct ReminderRound {
    std::deque<qint64> waiting; ///< ids of reminders that have no popup yet, in their order
    std::exception_ptr failure; ///< the first popup that could not be shown
    bool quietly = false;       ///< the failure is not put before the user
    bool hasCalled = false;     ///< the user was called in this round
    bool goesOn = false;        ///< the event loop holds the next turn
};

/// When reminders were checked last, and what the host's window should say of it.
/// Thread: the user-interface thread.
class CheckWatch {
public:
    /// Minutes after which the user is told that no check has run.
    static constexpr qint64 kSilentMinutes = 2;

    /// The add-in begins its work.
    void begin(const Clock& clock);
    void succeeded(const Clock& clock);
    void failed() noexcept { m_cannotRead = true; }
    /// True from a check that could not read the database to the next one that could.
    [[nodiscard]] bool cannotRead() const noexcept { return m_cannotRead; }
    /// One sentence when there is something to tell; empty while all is well.
    [[nodiscard]] QString text(const Clock& clock) const;

private:
    QDateTime m_at;    ///< of the last check, or of the begin
    qint64 m_atMs = 0; ///< the same moment by the clock that never runs backwards
    bool m_everRan = false;
    bool m_cannotRead = false;
};

} // namespace yrw
