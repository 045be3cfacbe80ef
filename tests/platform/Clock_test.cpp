#include "tests/support/ZoneClock.h"

#include <gtest/gtest.h>

using namespace yrw;

namespace {

TEST(SystemClock, GivesLocalTimeInWholeSeconds) {
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    const QDateTime now = Clock::instance().now();
    EXPECT_EQ(now.time().msec(), 0);
    EXPECT_EQ(now.timeSpec(), Qt::LocalTime);
    EXPECT_GE(now, before);
    EXPECT_LE(now, QDateTime::currentDateTime());
}

TEST(ManualClock, PassesTimeOnBothClocksButIsSetOnOne) {
    ManualClock clock(QDateTime(QDate(2024, 2, 28), QTime(23, 59, 59, 999)));
    const qint64 start = clock.monotonicMs();
    clock.advance(2);
    EXPECT_EQ(clock.now(), QDateTime(QDate(2024, 2, 29), QTime(0, 0, 1)));
    EXPECT_EQ(clock.monotonicMs() - start, 2000);
    clock.setNow(QDateTime(QDate(2020, 1, 1), QTime(12, 0)));
    EXPECT_EQ(clock.monotonicMs() - start, 2000);

    Clock::setInstance(&clock);
    EXPECT_EQ(&Clock::instance(), &clock);
    Clock::setInstance(nullptr);
    EXPECT_NE(&Clock::instance(), &clock);
}

TEST(ManualClock, TimeRunsOnThroughTheHourThatComesTwice) {
    const test::InZone zone("Europe/Berlin");
    // 02:30:00.500 for the second time, an hour after the first.
    const qint64 moment = 1729989000500;
    ManualClock clock(QDateTime::fromMSecsSinceEpoch(moment));
    EXPECT_EQ(clock.now().toMSecsSinceEpoch(), moment - 500);
    EXPECT_EQ(clock.now().time(), QTime(2, 30));
}

} // namespace
