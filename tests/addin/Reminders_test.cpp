// The check for due reminders, and the popup's answers.
#include "tests/addin/RemindersFixture.h"

#include "platform/forms/DatePicker.h"
#include "platform/prompt/ErrorLog.h"

#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>

using namespace yrw;
using namespace yrw::test;

namespace {

using RemindersTest = RemindersFixture;

/// A time without its seconds.
QDateTime whole(const QDateTime& time) {
    return time.addSecs(-time.time().second());
}

TEST_F(RemindersTest, WaitWhileTheHostIsBusyOrANotesWindowIsOpen) {
    remind(addNote(QStringLiteral("cu"), 2), -1);
    window().upper->isBusy = true;
    EXPECT_FALSE(minuteTick());
    EXPECT_FALSE(addIn->CheckForReminders());
    window().upper->isBusy = false;
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        EXPECT_FALSE(minuteTick());
        EXPECT_FALSE(addIn->CheckForReminders());
        form.unload();
    });
    addIn->ShowNotes(nullptr, 0);
    QDialog box;
    box.setWindowModality(Qt::ApplicationModal);
    box.show();
    EXPECT_FALSE(minuteTick());
    box.hide();
    EXPECT_TRUE(tags().isEmpty());
    options().set(setting::kCheckForReminders, false);
    EXPECT_TRUE(addIn->CheckForReminders()); // asked for directly, it runs all the same
    EXPECT_EQ(tags().size(), 1);
}

TEST_F(RemindersTest, AFailingCheckIsReportedAndCancels) {
    Module1::instance().database()->RunScript(QStringLiteral("DROP TABLE tblReminders;"));
    prompt.expectReport();
    EXPECT_FALSE(minuteTick());
    ASSERT_EQ(prompt.reports.size(), 1);
    EXPECT_EQ(prompt.reports[0].source, QStringLiteral("YRWNOTES.AddIn.CheckForReminders"));
    EXPECT_EQ(prompt.reports[0].message, QStringLiteral("Could Check for Reminders"));
    EXPECT_EQ(prompt.reports[0].title, QStringLiteral("Problem"));
}

TEST_F(RemindersTest, ThePopupSaysWhatItIsAbout) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    const Ref<IRecord> record = Module1::instance().application().Notes()->Item(QVariant(note));
    record->Field(QStringLiteral("PlainNote"))->setValue(QStringLiteral("About <b>the</b> fence"));
    struct Case {
        int kind;
        const char* caption;
    };
    for (const Case& one : {Case{0, ""}, Case{1, "Reminder To Everyone"}, Case{2, "Reminder To Me"},
                            Case{3, "Reminder To Selected Users"}, Case{4, "Reminder To My Group"},
                            Case{9, "Remind Everyone"}}) {
        record->Field(QStringLiteral("ReminderType"))->setValue(one.kind);
        remind(note, -90);
        ASSERT_TRUE(minuteTick());
        EXPECT_EQ(control<QLabel>("lblForm(4)").text(), QLatin1String(one.caption));
        EXPECT_EQ(control<QLabel>("lblForm(2)").text(), QStringLiteral("Ring back"));
        EXPECT_EQ(control<QLabel>("lblForm(5)").text(), QStringLiteral("Due: 10/03/2026 07:30"));
        EXPECT_EQ(control<QPlainTextEdit>("rxtMain").toPlainText(),
                  QStringLiteral("About <b>the</b> fence"));
        EXPECT_EQ(control<DatePicker>("dtpReminder").value(), whole(clock.now().addSecs(30 * 60)));
        EXPECT_EQ(popup().windowTitle(), QStringLiteral("YRW Reminder (Customer: Ferry Lane)"));
        EXPECT_FALSE(popup().isActiveWindow());
        click("cmdForm(1)");
    }
    remind(addNote({}, 0, NoteStatus::Active, QString()), -1);
    ASSERT_TRUE(minuteTick());
    EXPECT_EQ(popup().windowTitle(), QStringLiteral("YRW Reminder"));
}

TEST_F(RemindersTest, DismissingEndsItAndMayFinishTheNote) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    const qint64 reminder = remind(note, -1);
    ASSERT_TRUE(minuteTick());
    control<QCheckBox>("chkFinish").setChecked(true);
    prompt.expectMessage(2);
    click("cmdForm(0)"); // later and finished do not go together
    EXPECT_EQ(stored(reminder, "Status").toInt(), 1);
    EXPECT_EQ(prompt.asked.last(),
              QStringLiteral("Cannot Finish Note: You cannot finish a note when you click 'Tell Me "
                             "Later'."));
    click("cmdForm(1)");
    EXPECT_TRUE(tags().isEmpty());
    EXPECT_EQ(stored(reminder, "Status").toInt(), 4);
    EXPECT_EQ(stored(reminder, "LastDate").toDateTime(), clock.now());
    EXPECT_EQ(prompt.asked.last(),
              QStringLiteral("Finish Note: This note has been finished and will no longer appear "
                             "in your active notes list."));
    EXPECT_TRUE(
        query<Note>(Module1::instance().application().Notes()->Item(QVariant(note)))->Done());
}

TEST_F(RemindersTest, AnUntouchedPickerFollowsTheClock) {
    const qint64 reminder = remind(addNote(QStringLiteral("cu"), 2), -1);
    ASSERT_TRUE(minuteTick());
    const auto picked = [] { return control<DatePicker>("dtpReminder").value(); };
    clock.advance(300);
    EXPECT_TRUE(QTest::qWaitFor([&] { return picked() == clock.now().addSecs(1800); }));
    clock.advance(300);
    click("cmdForm(0)");
    EXPECT_EQ(stored(reminder, "NextDate").toDateTime().time().toString("HH:mm"), "09:40");

    remind(addNote(QStringLiteral("cu"), 2), -1);
    ASSERT_TRUE(minuteTick());
    control<DatePicker>("dtpReminder").stepBy(1);
    const QDateTime wish = picked();
    clock.advance(300);
    QTest::qWait(2200);
    EXPECT_EQ(picked(), wish);
}

TEST_F(RemindersTest, PresetsSetThePickerAndAnswerNothing) {
    const qint64 reminder = remind(addNote(QStringLiteral("cu"), 2), -1);
    ASSERT_TRUE(minuteTick());
    const QList<std::pair<const char*, QDateTime>> cases{
        {"cmdPreset(0)", clock.now().addSecs(600)},
        {"cmdPreset(1)", clock.now().addSecs(3600)},
        {"cmdPreset(2)", QDateTime(QDate(2026, 3, 11), QTime(9, 0))}};
    for (const auto& [preset, time] : cases) {
        click(preset);
        EXPECT_EQ(control<DatePicker>("dtpReminder").value(), time) << preset;
    }
    EXPECT_EQ(stored(reminder, "Status").toInt(), 1);
    EXPECT_EQ(control<DatePicker>("dtpReminder").minimumDate(), clock.now().date());
}

TEST_F(RemindersTest, ShowNotesOpensTheRecordAndLeavesThePopup) {
    const qint64 reminder = remind(addNote(QStringLiteral("cu"), 2), -1);
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
}

TEST_F(RemindersTest, AnAnswerThatCannotBeSavedIsToldByTheHostsWindowOnly) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    remind(note, -1);
    ASSERT_TRUE(minuteTick());
    Module1::instance().database()->RunScript(QStringLiteral("DROP TABLE tblReminders;"));
    control<QCheckBox>("chkFinish").setChecked(true);
    click("cmdForm(1)");
    EXPECT_TRUE(tags().isEmpty());
    EXPECT_FALSE( // what was not dismissed finishes nothing
        query<Note>(Module1::instance().application().Notes()->Item(QVariant(note)))->Done());
    EXPECT_TRUE(window().status.contains(QStringLiteral("could not be saved")));
    QFile log(errorLogFile());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("\tYRWNOTES.frmReminder\t"));
}

TEST_F(RemindersTest, APopupThatCannotBeFilledDoesNotStay) {
    remind(addNote(QStringLiteral("cu"), 2), -1);
    remind(addNote(QStringLiteral("cu"), 2), -1);
    Module1::instance().database()->RunScript(
        QStringLiteral("UPDATE tblQueries SET SQL = replace(SQL, 'n.Subject, ', '') WHERE Name = "
                       "'qryActiveReminders';"));
    prompt.expectReport();
    EXPECT_FALSE(addIn->CheckForReminders());
    EXPECT_TRUE(tags().isEmpty());
    EXPECT_EQ(prompt.reports.size(), 1);
}

/// A clock on which each look takes so long that one turn shows one popup.
class HurriedClock final : public Clock {
public:
    explicit HurriedClock(const Clock& wall) : m_wall(wall) {}
    [[nodiscard]] QDateTime now() const override { return m_wall.now(); }
    [[nodiscard]] qint64 monotonicMs() const override { return m_ms += 15; }

private:
    const Clock& m_wall;
    mutable qint64 m_ms = 0;
};

class ReminderRounds : public RemindersFixture {
protected:
    void SetUp() override {
        Clock::setInstance(&hurried);
        RemindersFixture::SetUp();
    }
    void TearDown() override {
        addIn.reset();
        settle();
    }
    HurriedClock hurried{clock};
};

TEST_F(ReminderRounds, TheRestComesInLaterTurnsAndNeverOverABox) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    for (int minute : {-4, -3, -2}) {
        remind(note, minute);
    }
    ASSERT_TRUE(minuteTick());
    EXPECT_EQ(tags().size(), 1);
    EXPECT_TRUE(QTest::qWaitFor([] { return tags().size() == 3; }));
    for (int minute : {-4, -3, -2}) {
        remind(note, minute);
    }
    ASSERT_TRUE(minuteTick());
    EXPECT_EQ(tags().size(), 4);
    QDialog box;
    box.setWindowModality(Qt::ApplicationModal);
    box.show();
    for (int turn = 0; turn < 5; ++turn) {
        settle();
    }
    EXPECT_EQ(tags().size(), 4);
    box.hide();
    ASSERT_TRUE(minuteTick()); // finds the others again
    EXPECT_TRUE(QTest::qWaitFor([] { return tags().size() == 6; }));
}

} // namespace
