#pragma once

#include <QDateTime>

namespace yrw {

class Clock;

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
