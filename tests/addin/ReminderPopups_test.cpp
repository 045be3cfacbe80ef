// Many popups, stray input, answers from elsewhere, and what the host's window says.
#include "tests/addin/RemindersFixture.h"

#include "platform/forms/DatePicker.h"
#include "tests/driving/ScreenWatch.h"
#include "tests/support/OtherUser.h"
#include "tests/support/ZoneClock.h"

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QShortcut>

using namespace yrw;
using namespace yrw::test;

namespace {

/// Sees a window come to the front.
class Raised : public QObject {
public:
    explicit Raised(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        isRaised = isRaised || event->type() == QEvent::ZOrderChange;
        return false;
    }
    bool isRaised = false;
};

class ReminderPopups : public RemindersFixture {
protected:
    /// So many due reminders, one a minute, the oldest first.
    QList<qint64> remindMany(int count) {
        const qint64 note = addNote(QStringLiteral("cu"), 2);
        QList<qint64> ids;
        for (int i = 0; i < count; ++i) {
            ids += remind(note, i - count);
        }
        return ids;
    }
    /// Shows the host's window and gives it the keyboard.
    void workInHost() {
        window().show();
        window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
};

TEST_F(ReminderPopups, ALongSubjectBreaksAndLeavesThePopupOnTheScreen) {
    for (const QString& subject :
         {QString(255, u'W'), QStringLiteral("Bring the folder ").repeated(15)}) {
        const qint64 note = addNote(QStringLiteral("cu"), 2);
        elsewhere(QStringLiteral("UPDATE tblNotes SET Subject = '%1'").arg(subject.left(255)));
        remind(note, -1);
        ASSERT_TRUE(minuteTick());
        settle();
        EXPECT_EQ(ScreenWatch::faultsOf(popup()).join("; ").toStdString(), "");
        EXPECT_LE(popup().width(), 700);
        click("cmdForm(1)");
    }
}

TEST_F(ReminderPopups, NoKeyReachesOneBeforeAClickOrTheOneShortcut) {
    workInHost();
    const qint64 reminder = remindMany(2).first();
    ASSERT_TRUE(minuteTick());
    for (const QPushButton* button : popup().findChildren<QPushButton*>()) {
        EXPECT_FALSE(button->isDefault() || button->autoDefault());
    }
    // Also when the window manager hands it the keyboard by itself.
    const auto typeAnswers = [] {
        for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space}) {
            QTest::keyClick(&popup(), Qt::Key(key));
        }
        for (const int key : {Qt::Key_D, Qt::Key_L}) {
            QTest::keyClick(&popup(), Qt::Key(key), Qt::AltModifier);
        }
        for (const QPushButton* button : popup().findChildren<QPushButton*>()) {
            EXPECT_FALSE(button->isDown()); // as it would be for a moment
        }
    };
    settle();
    popup().activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([] { return popup().isActiveWindow(); }));
    typeAnswers();
    EXPECT_EQ(tags().size(), 2);

    const QPointer<QShortcut> reach = window().findChild<QShortcut*>();
    ASSERT_NE(reach, nullptr);
    EXPECT_EQ(reach->key(), QKeySequence(QStringLiteral("Ctrl+Alt+R")));
    QTest::keyClick(&popup(), Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
    auto& text = control<QPlainTextEdit>("rxtMain");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return text.hasFocus(); })); // Return and Space answer nothing
    QTest::keyClick(&popup(), Qt::Key_Return);
    EXPECT_EQ(stored(reminder, "Status").toInt(), 1);
    // Left for the host, it may be handed the keyboard once more. A window manager does that at
    // times of its own and sees no reason for it in made-up keys.
    if (QGuiApplication::platformName() == u"offscreen") {
        for (QWidget* next : {static_cast<QWidget*>(&window()), static_cast<QWidget*>(&popup())}) {
            next->activateWindow();
            ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == next; }));
        }
        typeAnswers();
        EXPECT_EQ(tags().size(), 2);
    }
    QTest::keyClick(&popup(), Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
    QTest::keyClick(&popup(), Qt::Key_D, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([] { return tags().size() == 1; }));
    EXPECT_EQ(stored(reminder, "Status").toInt(), 4);
    typeAnswers(); // were meant for the first
    ASSERT_EQ(tags().size(), 1);
    clock.advance(1);
    QTest::mouseClick(control<QPlainTextEdit>("rxtMain").viewport(), Qt::LeftButton);
    QTest::keyClick(&popup(), Qt::Key_Escape);
    EXPECT_TRUE(tags().isEmpty());
    EXPECT_TRUE(reach.isNull());
}

TEST_F(ReminderPopups, TheTabKeyGoesFromThePickerToTheAnswers) {
    remindMany(1);
    ASSERT_TRUE(minuteTick());
    popup().takeKeys();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&popup()));
    QStringList visited;
    for (int i = 0; i < 13; ++i) { // five of them within the picker
        const QString name = popup().focusWidget()->objectName();
        if (visited.isEmpty() || visited.last() != name) {
            visited += name;
        }
        QTest::keyClick(popup().focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(u' ').toStdString(),
              "rxtMain dtpReminder cmdPreset(0) cmdPreset(1) cmdPreset(2) "
              "cmdForm(0) cmdForm(2) chkFinish cmdForm(1)");
}

TEST_F(ReminderPopups, ClicksMeantForSomethingElseCountForNothing) {
    const QList<qint64> ids = remindMany(3);
    ASSERT_TRUE(minuteTick());
    const auto press = [](qsizetype index = 0) {
        QTest::mouseClick(popup(index).findChild<QPushButton*>("cmdForm(1)"), Qt::LeftButton);
    };
    press(); // it has only just come
    EXPECT_EQ(tags().size(), 3);
    clock.advance(1);
    press();
    press(); // the first has only just gone
    EXPECT_EQ(tags().size(), 2);
    clock.advance(1);
    press();
    EXPECT_EQ(tags(), QStringList{tagOf(ids.last())});
    clock.advance(1);
    remindMany(1);
    ASSERT_TRUE(minuteTick());
    press(1); // behind the other it has only just come too
    EXPECT_EQ(tags().size(), 2);
}

TEST_F(ReminderPopups, ManyLieInACascadeWithTheOldestInFrontAndCallOnce) {
    workInHost();
    remindMany(40);
    ASSERT_TRUE(minuteTick());
    ASSERT_EQ(popups().size(), 40);
    frmReminder* const oldest = Module1::instance().reminders().front();
    EXPECT_EQ(oldest, &popup());
    EXPECT_TRUE(
        oldest->accessibleDescription().contains(QStringLiteral("40 reminders are waiting")));
    EXPECT_TRUE(oldest->accessibleDescription().contains(QStringLiteral("Ring back")));
    for (int i = 1; i < 6; ++i) { // as many as this screen has room for
        EXPECT_FALSE(popup(i).accessibleDescription().contains(QStringLiteral("waiting")));
        // Up and to the left of the one before: its title shows.
        EXPECT_LT(popup(i).y(), popup(i - 1).y());
        EXPECT_LT(popup(i).x(), popup(i - 1).x());
    }
    EXPECT_TRUE(window().isActiveWindow());
    const Raised next(popup(1));
    click("cmdForm(1)");
    EXPECT_EQ(Module1::instance().reminders().front(), &popup()); // the next oldest
    EXPECT_TRUE(next.isRaised);
}

TEST_F(ReminderPopups, StayWhenAnotherAddInOfTheHostEnds) {
    remind(addNote(QStringLiteral("cu"), 1), -10);
    ASSERT_TRUE(minuteTick());
    Ref<AddIn> second = make<AddIn>();
    second->setComponent(window().component);
    ASSERT_TRUE(second->Activate());
    second.reset();
    EXPECT_EQ(popups().size(), 1);
}

TEST_F(ReminderPopups, OneThatWasSettledElsewhereClosesAndWritesNothing) {
    const qint64 other = remind(addNote(QStringLiteral("cu"), 1), -10);
    const qint64 reminder = remind(addNote(QStringLiteral("cu"), 2), -5);
    ASSERT_TRUE(minuteTick());
    ASSERT_EQ(tags(), (QStringList{tagOf(other), tagOf(reminder)}));
    elsewhere(QStringLiteral("UPDATE tblReminders SET Status = 3, NextDate = '2026-03-10 10:00:00' "
                             "WHERE RecordID = %1;")
                  .arg(reminder));
    ASSERT_TRUE(minuteTick());
    EXPECT_EQ(tags(), QStringList{tagOf(other)});
    EXPECT_EQ(stored(reminder, "Status").toInt(), 3);
    EXPECT_EQ(window().status, QString());
}

TEST_F(ReminderPopups, ShowNotesOpensTheRecordAndLeavesThePopupUnlessItsNoteIsFinishedThere) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    const qint64 reminder = remind(note, -5);
    ASSERT_TRUE(minuteTick());
    QString caption;
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        caption = form.windowTitle();
        form.unload();
    });
    click("cmdForm(2)");
    EXPECT_TRUE(caption.contains(QStringLiteral("Ferry Lane")));
    EXPECT_EQ(tags(), QStringList{tagOf(reminder)});
    EXPECT_EQ(stored(reminder, "Status").toInt(), 1);
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        query<Note>(Module1::instance().application().Notes()->Item(QVariant(note)))->setDone(true);
        form.unload();
    });
    click("cmdForm(2)");
    EXPECT_TRUE(tags().isEmpty());
}

TEST_F(ReminderPopups, AnAnswerGivenElsewhereUnderItIsToldByTheHostsWindow) {
    const QString later = "UPDATE tblReminders SET Status = 3";
    const QString dismissed = "UPDATE tblReminders SET Status = 4";
    const QString gone = "DELETE FROM tblReminders; DELETE FROM tblNotes";
    const struct {
        const char* button; ///< none closes the popup
        bool finishes;
        QString deed;
        int messages;
        const char* status; ///< a part of what the host's window says
    } cases[] = {
        {"cmdForm(0)", false, dismissed, 0, "answered elsewhere"},
        {"cmdForm(1)", false, later, 0, "answered elsewhere"},
        {"cmdForm(1)", true, later, 1, "answered elsewhere"}, // the note is finished all the same
        {"cmdForm(1)", true, gone, 0, "could not be finished"},
        {nullptr, false, later, 0, "answered elsewhere"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.status);
        test::elsewhere(world.notesPath(), gone);
        window().status.clear();
        remind(addNote(QStringLiteral("cu"), 2), -5);
        ASSERT_TRUE(minuteTick());
        control<QCheckBox>("chkFinish").setChecked(c.finishes);
        test::elsewhere(world.notesPath(), c.deed); // between the look and the click
        prompt.expectMessage(c.messages);
        if (c.button == nullptr) {
            popup().unload();
        } else {
            click(c.button);
        }
        settle();
        EXPECT_TRUE(tags().isEmpty());
        EXPECT_TRUE(window().status.contains(QLatin1String(c.status)))
            << window().status.toStdString();
    }
}

TEST_F(ReminderPopups, TimesThatTheClocksLeaveOutOrRunThroughTwiceAreExplained) {
    struct Case {
        const char* zone;
        const char* picked;
        const char* words; ///< part of the explanation; empty for none
        const char* stored;
    };
    const Case cases[] = {
        {"Pacific/Apia", "2011-12-30 12:00", "31/12/2011 12:00 counts", "2011-12-31 12:00"},
        {"Europe/Berlin", "2026-03-29 02:30", "03:30 counts", "2026-03-29 03:30"},
        {"Europe/Berlin", "2026-10-25 02:30", "comes twice", "2026-10-25 02:30"},
        {"Australia/Lord_Howe", "2026-04-05 01:15", "", "2026-04-05 01:15"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.zone) + " " + each.picked);
        const InZone zone(each.zone);
        const QString format = QStringLiteral("yyyy-MM-dd HH:mm");
        const QStringList parts = QString::fromLatin1(each.picked).split(u' ');
        const QDate day = QDate::fromString(parts[0], Qt::ISODate);
        clock.setNow(QDateTime(day.addDays(-1), QTime(12, 0)));
        const qint64 reminder = remindMany(1).first();
        ASSERT_TRUE(minuteTick());
        auto& explanation = control<QLabel>("lblClockChange");
        EXPECT_TRUE(explanation.isHidden());
        control<DatePicker>("dtpReminder")
            .setDateTime(QDateTime(day, QTime::fromString(parts[1]), Qt::UTC));
        EXPECT_EQ(explanation.isHidden(), *each.words == '\0');
        EXPECT_TRUE(explanation.text().contains(QLatin1String(each.words)))
            << explanation.text().toStdString();
        click("cmdForm(0)");
        EXPECT_EQ(stored(reminder, "NextDate").toDateTime().toString(format),
                  QLatin1String(each.stored));
        elsewhere(QStringLiteral("DELETE FROM tblReminders;"));
    }
}

TEST_F(ReminderPopups, TheHostsWindowTellsHowLongNobodyChecked) {
    struct Step {
        const char* what;
        int seconds; ///< that pass before the tick
        bool busy;
        const char* status;
    };
    const Step steps[] = {
        {"waits a little", 60, true, ""},
        {"waits", 61, true, "No reminders were checked since 10/03/2026 09:00."},
        {"runs", 60, false, ""},
        {"waits a little", 120, true, ""},
        {"waits long", 60, true, "Reminders were last checked at 10/03/2026 09:03."},
        {"catches up", 60, false, ""},
    };
    for (const Step& step : steps) {
        clock.advance(step.seconds);
        window().upper->isBusy = step.busy;
        timerTicks();
        EXPECT_EQ(window().status, QLatin1String(step.status)) << step.what;
    }
}

TEST_F(ReminderPopups, ADatabaseThatCannotBeReadIsReportedOnceAndCaughtUpWith) {
    const qint64 reminder = remindMany(1).first();
    elsewhere(QStringLiteral("ALTER TABLE tblReminders RENAME TO tblGone;"));
    prompt.expectReport(1);
    for (int minute = 0; minute < 3; ++minute) {
        timerTicks();
        EXPECT_EQ(prompt.reports[0].source, QStringLiteral("YRWNOTES.AddIn.CheckForReminders"));
        EXPECT_EQ(prompt.reports[0].message, QStringLiteral("Could Check for Reminders"));
        EXPECT_EQ(prompt.reports[0].title, QStringLiteral("Problem"));
        EXPECT_EQ(window().status, "The notes database cannot be read. No reminders were checked "
                                   "since 10/03/2026 09:00.");
        clock.advance(60);
    }
    elsewhere(QStringLiteral("ALTER TABLE tblGone RENAME TO tblReminders;"));
    timerTicks();
    EXPECT_EQ(window().status, QString());
    EXPECT_EQ(tags(), QStringList{tagOf(reminder)});
}

} // namespace
