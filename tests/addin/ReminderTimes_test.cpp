// Reminders against a clock that jumps, in six zones; and the life of one as a random walk.
#include "tests/addin/RemindersFixture.h"

#include "platform/clock/WallTime.h"
#include "platform/forms/DatePicker.h"
#include "tests/support/ZoneClock.h"

#include <random>

using namespace yrw;
using namespace yrw::test;

namespace {

const char* const kZones[] = {"UTC",          "Europe/Berlin", "America/St_Johns",
                              "Asia/Kolkata", "Pacific/Apia",  "Australia/Lord_Howe"};

/// The hands of the clock as a number of seconds.
qint64 hands(const QDateTime& time) {
    return QDateTime(time.date(), time.time(), Qt::UTC).toSecsSinceEpoch();
}

class ReminderTimes : public RemindersFixture {
protected:
    /// Starts the add-in with a clock that follows the zone of the process.
    void startAt(const QDateTime& start) {
        zoneClock = std::make_unique<ZoneClock>(clock, start);
        addIn.reset();
        settle();
        create();
        ASSERT_TRUE(addIn->Activate());
        note = addNote(QStringLiteral("cu"), 2);
    }
    void SetUp() override { makeNotesDatabase(); }
    ~ReminderTimes() override { addIn.reset(); }

    qint64 remindAt(const QDateTime& due) {
        Application& application = Module1::instance().application();
        return addReminder(application, clock,
                           *query<Note>(application.Notes()->Item(QVariant(note))), due, 1);
    }
    /// Dismisses what is on screen and writes down when.
    void dismissAll(QMultiMap<QString, qint64>& shown) {
        while (!popups().isEmpty()) {
            shown.insert(popup().tag(), hands(zoneClock->now()));
            zoneClock->pass(1);
            QTest::mouseClick(&control<QPushButton>("cmdForm(1)"), Qt::LeftButton);
        }
    }

    std::unique_ptr<ZoneClock> zoneClock;
    qint64 note = 0;
};

TEST_F(ReminderTimes, WhatIsPutOffInTheDoubleHourDoesNotComeBackAtOnce) {
    const InZone zone("Europe/Berlin");
    startAt(QDateTime(QDate(2026, 10, 25), QTime(1, 50)).addSecs(3600)); // 02:50, the first time
    const auto hour = [](qint64 id) {
        return stored(id, "NextDate").toDateTime().toString(QStringLiteral("HH:mm"));
    };
    const qint64 closed = remindAt(zoneClock->now());
    ASSERT_TRUE(minuteTick());
    popup().close();
    EXPECT_EQ(hour(closed), "03:05"); // 02:05 has been already
    const qint64 later = remindAt(zoneClock->now());
    ASSERT_TRUE(minuteTick());
    ASSERT_EQ(tags(), QStringList{tagOf(later)});
    zoneClock->pass(1);
    QTest::mouseClick(&control<QPushButton>("cmdPreset(1)"), Qt::LeftButton);
    QTest::mouseClick(&control<QPushButton>("cmdForm(0)"), Qt::LeftButton);
    EXPECT_EQ(hour(later), "03:50");
    ASSERT_TRUE(minuteTick());
    EXPECT_TRUE(tags().isEmpty());
}

/// One recipient's reminder, driven by a random walk. What must hold is checked after every step.
class ReminderLife : public ReminderTimes, public testing::WithParamInterface<unsigned> {
protected:
    enum class Ended { No, Dismissed, Finished, Deleted };

    [[nodiscard]] bool isShown() const { return tags().contains(tagOf(reminder)); }
    [[nodiscard]] int any(int count) { return int(random() % unsigned(count)); }
    [[nodiscard]] QString text(const QDateTime& time) const {
        return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    void answer(const char* button) {
        zoneClock->pass(1);
        popup().findChild<QPushButton*>(QLatin1String(button))->click();
    }
    void restart() {
        if (isShown()) {
            asked = minutesLater(zoneClock->now(), kUnansweredMinutes);
            shownFor = {};
        }
        addIn.reset();
        settle();
        create();
        ASSERT_TRUE(addIn->Activate());
    }
    /// The other machine answers.
    void answerElsewhere() {
        const QDateTime later = minutesLater(zoneClock->now(), 1 + any(200));
        if (any(3) == 0) {
            change(QStringLiteral("Status = 4"));
            ended = Ended::Dismissed;
        } else {
            change(QStringLiteral("Status = 3, NextDate = '%1'").arg(text(later)));
            asked = later;
        }
    }
    void change(const QString& assignments) {
        elsewhere(QStringLiteral("UPDATE tblReminders SET LastDate = '%1', %2;")
                      .arg(text(zoneClock->now()), assignments));
    }
    /// The note is edited: its reminders are made anew.
    void edit() {
        Application& application = Module1::instance().application();
        query<Note>(application.Notes()->Item(QVariant(note)))->DeleteReminders();
        asked = minutesLater(zoneClock->now(), any(120));
        reminder = remindAt(asked);
        shownFor = {};
        ended = Ended::No;
    }
    void answerHere() {
        switch (any(6)) {
        case 0:
            answer("cmdForm(1)");
            ended = Ended::Dismissed;
            break;
        case 1:
            popup().findChild<QAbstractButton*>(QStringLiteral("chkFinish"))->click();
            prompt.expectMessage();
            answer("cmdForm(1)");
            ended = Ended::Finished;
            break;
        case 2:
            popup().close();
            asked = minutesLater(zoneClock->now(), kUnansweredMinutes);
            break;
        default:
            popup().findChild<QPushButton*>(QStringLiteral("cmdPreset(%1)").arg(any(3)))->click();
            asked = control<DatePicker>("dtpReminder").value();
            answer("cmdForm(0)");
        }
    }
    /// The clock is set, or the user travels.
    void disturbClock() {
        const qint64 jumps[] = {1, 8 * 3600, 40 * 86400, -3600, -86400};
        const auto chosen = std::size_t(any(int(std::size(jumps)) + 2));
        if (chosen >= std::size(jumps)) {
            InZone::change(kZones[any(int(std::size(kZones)))]);
        }
        zoneClock->set(chosen < std::size(jumps) ? jumps[chosen] : 0);
    }
    void step() {
        switch (any(9)) {
        case 0:
            restart();
            break;
        case 1:
            if (ended == Ended::No) {
                answerElsewhere();
            }
            break;
        case 2:
            if (ended != Ended::Finished && any(3) == 0) {
                edit();
            }
            break;
        case 3:
            if (any(20) == 0) {
                elsewhere(QStringLiteral("DELETE FROM tblReminders;"));
                ended = Ended::Deleted;
            }
            break;
        case 4:
            if (any(3) == 0) {
                disturbClock();
                break;
            }
            [[fallthrough]];
        default:
            zoneClock->pass(60 * (1 + any(any(4) == 0 ? 600 : 30)));
        }
    }

    std::mt19937 random{GetParam()};
    QDateTime asked;
    QDateTime shownFor; ///< what was asked for when it was seen on screen last
    qint64 reminder = 0;
    Ended ended = Ended::No;
};

TEST_P(ReminderLife, IsNeverLostNeverEarlyAndOverWhenItIsOver) {
    const InZone zone(kZones[GetParam() % std::size(kZones)]);
    const QDate days[] = {QDate(2026, 3, 29), QDate(2026, 10, 24), QDate(2026, 10, 4),
                          QDate(2026, 11, 1)};
    startAt(QDateTime(days[GetParam() % std::size(days)], QTime(0, 30)));
    asked = zoneClock->now().addSecs(600);
    reminder = remindAt(asked);
    int answers = 0;
    for (int i = 0; i < 120; ++i) {
        ASSERT_NO_FATAL_FAILURE(step());
        ASSERT_TRUE(minuteTick());
        ASSERT_LE(tags().size(), 1);
        if (ended != Ended::No) {
            ASSERT_TRUE(tags().isEmpty()) << "step " << i << ": shown though it is over";
            if (ended == Ended::Finished || any(3) != 0) {
                elsewhere(QStringLiteral("UPDATE tblNotes SET Status = 1;"));
            }
            edit(); // the next life
            ASSERT_TRUE(minuteTick());
        }
        const bool isDue = hands(asked) <= hands(zoneClock->now()) + 60;
        // One that is on screen stays when the clock is set back behind its time.
        const bool stays = shownFor.isValid() && isSameWallTime(shownFor, asked);
        ASSERT_EQ(isShown(), isDue || stays)
            << "step " << i << ": asked for " << text(asked).toStdString() << " at "
            << text(zoneClock->now()).toStdString();
        shownFor = isShown() ? asked : QDateTime();
        if (isShown() && any(2) == 0) {
            answerHere();
            shownFor = {};
            ++answers;
        }
    }
    EXPECT_GT(answers, 5);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ReminderLife, testing::Range(1U, 13U));

} // namespace
