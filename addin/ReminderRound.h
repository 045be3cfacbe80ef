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
    /// `failure` is one sentence that says what was the cause.
    void failed(const QString& failure) { m_failure = failure; }
    /// True from a check that failed to the next one that did not.
    [[nodiscard]] bool isFailing() const noexcept { return !m_failure.isEmpty(); }
    /// One sentence when there is something to tell; empty while all is well.
    [[nodiscard]] QString text(const Clock& clock) const;

private:
    QDateTime m_at;    ///< of the last check, or of the begin
    qint64 m_atMs = 0; ///< the same moment by the clock that never runs backwards
    bool m_everRan = false;
    QString m_failure; ///< of the last check; empty when it succeeded
};

} // namespace yrw
