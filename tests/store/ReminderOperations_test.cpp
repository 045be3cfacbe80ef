#include "store/ReminderOperations.h"
#include "tests/support/NotesFixture.h"

namespace yrw::test {
namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kNoteID = QStringLiteral("NoteID");

class ReminderOperationsTest : public NotesFixture {
protected:
    [[nodiscard]] QDateTime now() { return store.manualClock().now(); }
    qint64 remind(Note& about, int seconds, qint64 userID = 1) {
        return addReminder(store.application(), store.manualClock(), about, now().addSecs(seconds),
                           userID);
    }
    [[nodiscard]] std::deque<Ref<IRecord>> due(const QString& host = kFakeHostProgID) {
        return dueReminders(store.application(), host, 1, [](qint64) { return true; });
    }
    void run(const QString& script) { store.database()->RunScript(script); }
    /// Status of the one note and of its one reminder; "-" for what is not there.
    [[nodiscard]] QString statusOfBoth() {
        QStringList found;
        for (const QString& table : {schema::kTblNotes, schema::kTblReminders}) {
            const Ref<dao::Recordset> rows = store.database()->OpenRecordset(table);
            found += rows->AtEof() ? QStringLiteral("-") : rows->value(u"Status").toString();
        }
        return found.join(u' ');
    }

    const QString kLater = "UPDATE tblReminders SET Status = 3, LastDate = '2026-03-10 08:59:00', "
                           "NextDate = '2026-03-10 11:00:00';";
    const QString kDismissed =
        "UPDATE tblReminders SET Status = 4, LastDate = '2026-03-10 08:59:00';";
    const QString kSameDates = "UPDATE tblReminders SET Status = 4;";
    const QString kClosed = "UPDATE tblReminders SET Status = 2, NextDate = '2026-03-10 09:14:00';";
    const QString kFinished = "UPDATE tblNotes SET Status = 2;";
    const QString kReplaced = "UPDATE tblReminders SET RecordID = RecordID + 100;";
    const QString kDeleted = "DELETE FROM tblReminders;";
    const QString kGone = "DELETE FROM tblReminders; DELETE FROM tblNotes;";
};

TEST_F(ReminderOperationsTest, TimeStateUserAndNoteDecideWhatIsDue) {
    const struct {
        const char* what;
        std::optional<int> secondsUntilDue;
        QVariant status;
        bool isDue;
        qint64 user = 1;
        NoteStatus note = NoteStatus::Active;
        QString host = kFakeHostProgID;
        bool onRecord = true;
    } cases[] = {
        {"due a minute ago", -60, 1, true},
        {"due this second", 0, 1, true},
        {"due in the minute that is allowed for", 60, 1, true},
        {"due a second later", 61, 1, false},
        {"due since last year", -400 * 86400, 1, true},
        {"without a date", {}, 1, false},
        {"no state", 0, QVariant(), true},
        {"closed without an answer, due again", 0, 2, true},
        {"closed without an answer, not yet", 900, 2, false},
        {"told later, now", 0, 3, true},
        {"told later, not yet", 3600, 3, false},
        {"dismissed", -60, 4, false},
        {"dismissed and due in the future", 3600, 4, false},
        {"somebody else's", -60, 1, false, 2},
        {"of a finished note", -60, 1, false, 1, NoteStatus::Done},
        {"of a note of another host", -60, 1, false, 1, NoteStatus::Active,
         QStringLiteral("Other.Application")},
        {"on no record", -60, 1, true, 1, NoteStatus::Active, QStringLiteral("Other.Application"),
         false},
    };
    for (const auto& each : cases) {
        const Ref<Note> note =
            store.addNote(QStringLiteral("Ring back"),
                          each.onRecord ? store.hostRecord(QStringLiteral("cu"), 2) : nullptr);
        note->setDone(each.note == NoteStatus::Done);
        const qint64 id = remind(*note, each.secondsUntilDue.value_or(0), each.user);
        if (!each.secondsUntilDue) {
            note->Reminder(id)->Field(QStringLiteral("NextDate"))->setValue(QVariant());
        }
        note->Reminder(id)->Field(QStringLiteral("Status"))->setValue(each.status);
        EXPECT_EQ(due(each.host).size(), each.isDue ? 1U : 0U) << each.what;
        run(kGone);
    }
}

TEST_F(ReminderOperationsTest, TheDueComeInTheirOrderWithTheirNotesAndOnlyThoseWanted) {
    const Ref<Note> note =
        store.addNote(QStringLiteral("Ring back"), store.hostRecord(QStringLiteral("cu"), 2));
    const qint64 second = remind(*note, -60);
    const qint64 first = remind(*note, -120);
    const qint64 unwanted = remind(*note, -90);
    const auto found = dueReminders(store.application(), kFakeHostProgID, 1,
                                    [&](qint64 id) { return id != unwanted; });
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->value(kRecordID), first);
    EXPECT_EQ(found[1]->value(kRecordID), second);
    EXPECT_EQ(found[0]->value(QStringLiteral("NextDate")).toDateTime(), now().addSecs(-120));
    EXPECT_EQ(found[0]->value(QStringLiteral("Subject")), QStringLiteral("Ring back"));
    EXPECT_EQ(found[0]->value(QStringLiteral("OwnerRecordID")), 2);
    EXPECT_TRUE(dueReminders(store.application(), kFakeHostProgID, QVariant(), [](qint64) {
                    return true;
                }).empty());
}

TEST_F(ReminderOperationsTest, OneThatWasSettledElsewhereIsUnansweredNoLonger) {
    for (const QString& deed : {QString(), kLater, kDismissed, kSameDates, kClosed, kFinished,
                                kReplaced, kDeleted, kGone}) {
        const Ref<Note> note = store.addNote(QStringLiteral("a"));
        const qint64 id = remind(*note, -60);
        const auto shown = due();
        run(deed);
        EXPECT_EQ(unansweredReminders(store.application(), {shown.begin(), shown.end()}),
                  deed.isEmpty() ? QSet<qint64>{id} : QSet<qint64>())
            << deed.toStdString();
        run(kGone);
    }
}

TEST_F(ReminderOperationsTest, AnAnswerIsWrittenUnlessSomebodyElseHasAnswered) {
    enum class Way { Later, Dismiss, Close };
    const struct {
        Way way;
        QString deed; ///< done by somebody else under it
        AnswerResult result;
        const char* holds; ///< status of note and reminder
    } cases[] = {
        {Way::Later, {}, AnswerResult::Stored, "1 3"},
        {Way::Later, kDismissed, AnswerResult::AnsweredElsewhere, "1 4"},
        {Way::Later, kFinished, AnswerResult::Stored, "2 3"},
        {Way::Later, kGone, AnswerResult::AnsweredElsewhere, "- -"},
        {Way::Dismiss, {}, AnswerResult::Stored, "1 4"},
        {Way::Dismiss, kLater, AnswerResult::AnsweredElsewhere, "1 3"},
        {Way::Dismiss, kReplaced, AnswerResult::AnsweredElsewhere, "1 1"},
        {Way::Close, {}, AnswerResult::Stored, "1 2"},
        {Way::Close, kLater, AnswerResult::AnsweredElsewhere, "1 3"},
        {Way::Close, kReplaced, AnswerResult::AnsweredElsewhere, "1 1"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::to_string(int(each.way)) + " " + each.deed.toStdString());
        const Ref<Note> note = store.addNote(QStringLiteral("a"));
        remind(*note, -60);
        const Ref<IRecord> held = due().front();
        IRecord& reminder = *held;
        run(each.deed);
        const auto answer = [&] {
            switch (each.way) {
            case Way::Later:
                return tellReminderLater(reminder, now(), now().addSecs(7200));
            case Way::Dismiss:
                return dismissReminder(reminder, now());
            case Way::Close:
                break;
            }
            return closeReminderUnanswered(reminder, now());
        };
        EXPECT_EQ(answer(), each.result);
        EXPECT_EQ(statusOfBoth(), each.holds);
        if (each.result == AnswerResult::Stored) {
            const Ref<IRecord> stored =
                store.application().Reminders()->Item(reminder.value(kRecordID));
            const int seconds[] = {7200, -60, 900};
            EXPECT_EQ(stored->value(QStringLiteral("NextDate")).toDateTime(),
                      now().addSecs(seconds[int(each.way)]));
            EXPECT_EQ(stored->value(QStringLiteral("LastDate")).toDateTime(),
                      each.way == Way::Close ? QDateTime() : now());
        }
        run(kGone);
    }
}

TEST_F(ReminderOperationsTest, AFailedAnswerRaisesAndTheNoteOfOneIsFinishedUnlessGone) {
    const Ref<Note> note = store.addNote(QStringLiteral("a"));
    remind(*note, -60);
    const Ref<IRecord> reminder = due().front();
    run(kDeleted);
    finishNoteOf(*reminder, store.application()); // is about the note, not the reminder
    EXPECT_EQ(statusOfBoth(), "2 -");
    run(kGone);
    EXPECT_THROW(finishNoteOf(*reminder, store.application()), AutomationError);
    run(QStringLiteral("DROP TABLE tblReminders;"));
    EXPECT_THROW(dismissReminder(*reminder, now()), AutomationError);
}

} // namespace
} // namespace yrw::test
