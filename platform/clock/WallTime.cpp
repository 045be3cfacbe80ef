#include "platform/clock/WallTime.h"

namespace yrw {

namespace {

/// What the hands show, as a time in a zone without changes.
QDateTime hands(const QDateTime& time) {
    return QDateTime(time.date(), time.time(), Qt::UTC);
}

/// Seconds that the clock is put forward (back: negative) within a day of a time.
int clockStep(const QDate& date, const QTime& time) {
    return QDateTime(date.addDays(1), time).offsetFromUtc() -
           QDateTime(date.addDays(-1), time).offsetFromUtc();
}

} // namespace

WallTimeKind wallTimeKind(const QDate& date, const QTime& time) {
    const QDateTime local(date, time);
    if (!local.isValid() || local.date() != date || local.time() != time) {
        return WallTimeKind::Missing;
    }
    const int step = clockStep(date, time);
    const bool isDouble = step < 0 && (hands(local.addSecs(step)) == hands(local) ||
                                       hands(local.addSecs(-step)) == hands(local));
    return isDouble ? WallTimeKind::Double : WallTimeKind::Ordinary;
}

QDateTime existingTime(const QDate& date, const QTime& time) {
    const QDateTime local(date, time);
    const bool isThere = local.isValid() && local.date() == date && local.time() == time;
    if (isThere || !date.isValid() || !time.isValid()) {
        return local;
    }
    const QDateTime moved = QDateTime(date, time, Qt::UTC).addSecs(clockStep(date, time));
    return QDateTime(moved.date(), moved.time());
}

QDateTime minutesLater(const QDateTime& from, qint64 minutes) {
    const QDateTime passed = from.addSecs(60 * minutes);
    const QDateTime moved = hands(from).addSecs(60 * minutes);
    const QDateTime shown = existingTime(moved.date(), moved.time());
    const bool takesShown =
        minutes < 0 ? hands(shown) < hands(passed) : hands(shown) > hands(passed);
    return takesShown ? shown : passed;
}

} // namespace yrw
