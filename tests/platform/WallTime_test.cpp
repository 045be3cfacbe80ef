#include "platform/clock/WallTime.h"

#include "tests/support/ZoneClock.h"

#include <gtest/gtest.h>

namespace yrw::test {

namespace {

QString hands(const QDateTime& time) {
    return time.toString(QStringLiteral("dd/MM/yyyy HH:mm"));
}

TEST(WallTime, MissingAndDoubleHoursOfEveryZone) {
    struct Case {
        const char* zone;
        QDateTime asked; ///< by the hands alone
        WallTimeKind kind;
        const char* counts;
    };
    const auto at = [](int year, int month, int day, int hour, int minute) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute), Qt::UTC);
    };
    using Kind = WallTimeKind;
    const Case cases[] = {
        {"UTC", at(2026, 3, 29, 2, 30), Kind::Ordinary, "29/03/2026 02:30"},
        {"Europe/Berlin", at(2026, 3, 29, 1, 59), Kind::Ordinary, "29/03/2026 01:59"},
        {"Europe/Berlin", at(2026, 3, 29, 2, 0), Kind::Missing, "29/03/2026 03:00"},
        {"Europe/Berlin", at(2026, 3, 29, 2, 59), Kind::Missing, "29/03/2026 03:59"},
        {"Europe/Berlin", at(2026, 3, 29, 3, 0), Kind::Ordinary, "29/03/2026 03:00"},
        {"Europe/Berlin", at(2026, 10, 25, 1, 59), Kind::Ordinary, "25/10/2026 01:59"},
        {"Europe/Berlin", at(2026, 10, 25, 2, 0), Kind::Double, "25/10/2026 02:00"},
        {"Europe/Berlin", at(2026, 10, 25, 2, 59), Kind::Double, "25/10/2026 02:59"},
        {"Europe/Berlin", at(2026, 10, 25, 3, 0), Kind::Ordinary, "25/10/2026 03:00"},
        {"America/St_Johns", at(2026, 3, 8, 2, 30), Kind::Missing, "08/03/2026 03:30"},
        {"America/St_Johns", at(2026, 11, 1, 1, 30), Kind::Double, "01/11/2026 01:30"},
        {"Asia/Kolkata", at(2026, 3, 29, 2, 30), Kind::Ordinary, "29/03/2026 02:30"},
        {"Pacific/Apia", at(2011, 12, 30, 10, 0), Kind::Missing, "31/12/2011 10:00"}, // a whole day
        {"Australia/Lord_Howe", at(2026, 10, 4, 2, 15), Kind::Missing, "04/10/2026 02:45"},
        {"Australia/Lord_Howe", at(2026, 4, 5, 1, 45), Kind::Double, "05/04/2026 01:45"},
        {"Australia/Lord_Howe", at(2026, 4, 5, 1, 15), Kind::Ordinary, "05/04/2026 01:15"},
    };
    for (const Case& each : cases) {
        const InZone zone(each.zone);
        const QDate date = each.asked.date();
        EXPECT_EQ(wallTimeKind(date, each.asked.time()), each.kind) << each.zone << each.counts;
        EXPECT_EQ(hands(existingTime(date, each.asked.time())), QLatin1String(each.counts))
            << each.zone;
    }
}

TEST(WallTime, LaterMeansLaterByTheHandsAndInTruth) {
    const InZone zone("Europe/Berlin");
    const QDateTime spring(QDate(2026, 3, 29), QTime(1, 50));
    EXPECT_EQ(hands(minutesLater(spring, 30)), "29/03/2026 03:20");
    EXPECT_EQ(hands(minutesLater(spring, 90)), "29/03/2026 04:20"); // not 03:20, half an hour away
    const QDateTime first = QDateTime(QDate(2026, 10, 25), QTime(1, 50)).addSecs(3600);
    ASSERT_EQ(hands(first), "25/10/2026 02:50");
    EXPECT_EQ(hands(minutesLater(first, 15)), "25/10/2026 03:05"); // 02:05 has been already
    EXPECT_EQ(hands(minutesLater(first.addSecs(3600), 15)), "25/10/2026 03:05");
    EXPECT_EQ(hands(minutesLater(QDateTime(QDate(2026, 10, 25), QTime(3, 5)), -30)),
              "25/10/2026 02:35");
    EXPECT_EQ(hands(minutesLater(QDateTime(QDate(2026, 6, 1), QTime(23, 50)), 15)),
              "02/06/2026 00:05");
}

} // namespace

} // namespace yrw::test
