#pragma once

#include <QDateTime>

namespace yrw {

/// The one source of the present time.
///
/// One instance serves the process; it is set by `main` or by a test before anything else runs.
/// Only the places that compose the program ask `Clock::instance()`; everything else is handed a
/// reference.
/// Thread: any; a `ManualClock` only the one that moves it.
class Clock {
public:
    virtual ~Clock();

    /// The local wall-clock time, cut to whole seconds, without a time zone of its own
    /// (`Qt::LocalTime`), as the database stores dates.
    [[nodiscard]] virtual QDateTime now() const = 0;
    /// Milliseconds that have passed since some fixed moment; never runs backwards.
    [[nodiscard]] virtual qint64 monotonicMs() const = 0;

    /// The process-wide clock: the system's unless another was set.
    static Clock& instance();
    /// Sets the process-wide clock; nothing gives the system's back. Not owned.
    static void setInstance(Clock* clock);
};

/// A clock that stands still until it is moved; for tests and tools.
class ManualClock final : public Clock {
public:
    explicit ManualClock(const QDateTime& start);

    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] qint64 monotonicMs() const override;

    /// Sets the wall clock alone, as a user who changes the time does.
    void setNow(const QDateTime& now);
    /// Lets time pass: both clocks move on by the given number of seconds (0 or more).
    void advance(qint64 seconds);

private:
    QDateTime m_now;
    qint64 m_monotonicMs = 0;
};

} // namespace yrw
