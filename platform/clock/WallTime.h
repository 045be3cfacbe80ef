#pragma once

#include <QDateTime>

namespace yrw {

/// What the changes of the local clock make of a time of day: there is no such time on the day the
/// clock goes forward, and it comes twice on the day the clock goes back.
enum class WallTimeKind { Ordinary, Missing, Double };

/// Kind of a time in the process's zone. Date and time are valid.
[[nodiscard]] WallTimeKind wallTimeKind(const QDate& date, const QTime& time);

/// True when the hands of the clock show the same. Two readings of one written time may be taken
/// for different moments where the time comes twice; as times of the wall clock they are one.
[[nodiscard]] inline bool isSameWallTime(const QDateTime& a, const QDateTime& b) {
    return a.date() == b.date() && a.time() == b.time();
}

/// The local time with that date and time of day. A missing one is moved on by what the clock is
/// put forward (02:30 becomes 03:30), so that it is never before the time asked for.
/// Invalid when date or time are.
[[nodiscard]] QDateTime existingTime(const QDate& date, const QTime& time);

/// The local time that many minutes later, negative for earlier. Across a change of the clock both
/// hold: at least so much time passes, and the hands of the clock move at least as far. A wall
/// clock alone cannot tell the two halves of a double hour apart, and a reminder put off within it
/// must not come back at once.
[[nodiscard]] QDateTime minutesLater(const QDateTime& from, qint64 minutes);

} // namespace yrw
