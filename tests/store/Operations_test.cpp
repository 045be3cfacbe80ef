#include "store/NoteReading.h"
#include "tests/support/NotesFixture.h"

namespace yrw::test {
namespace {

const QString kRecordID = QStringLiteral("RecordID");

using OperationsTest = NotesFixture;

TEST_F(OperationsTest, CreatesANoteOfARecord) {
    const Ref<IRecord> customer = store.hostRecord(QStringLiteral("cu"), 2);
    NoteChoices choices;
    choices.Subject = QStringLiteral("Call back");
    choices.Date = store.manualClock().now();
    choices.Kind = ReminderKind::Me;
    choices.ReminderDate = choices.Date.addDays(1);
    choices.AutomaticallyShow = true;
    choices.Type = NoteType::Private;
    const Ref<Note> note =
        createNote(store.application(), store, ownerOf(customer, store), choices);
    const struct {
        const char* field;
        QVariant value;
    } expected[] = {
        {"OwnerComponentProgID", kFakeHostProgID},
        {"OwnerProgID", QStringLiteral("Test.Customers")},
        {"OwnerObjectKey", QStringLiteral("cu")},
        {"OwnerRecordID", 2},
        {"RecordUserCode", QStringLiteral("ANNA")},
        {"RecordUserID", 1},
        {"Date", choices.Date},
        {"ReminderType", 2},
        {"ReminderDate", choices.ReminderDate},
        {"AutomaticallyShow", true},
        {"NoteType", 2},
        {"Status", 1},
    };
    for (const auto& e : expected) {
        EXPECT_EQ(note->value(QLatin1String(e.field)), e.value) << e.field;
    }
}

TEST_F(OperationsTest, ANoteOnNoRecordNamesNoHost) {
    const Ref<Note> note = store.addNote(QStringLiteral("system"));
    const QVariant owner = note->value(QStringLiteral("OwnerComponentProgID"));
    EXPECT_FALSE(owner.isNull());
    EXPECT_TRUE(owner.toString().isEmpty());
    EXPECT_TRUE(note->value(QStringLiteral("OwnerObjectKey")).isNull());
    EXPECT_TRUE(note->value(QStringLiteral("ReminderDate")).isNull());
}

TEST_F(OperationsTest, CancellingRemindersMarksTheNoteAsHavingNone) {
    NoteChoices choices;
    choices.Kind = ReminderKind::Me;
    const Ref<Note> note = createNote(store.application(), store, {}, choices);
    addReminder(store.application(), store.manualClock(), *note, store.manualClock().now(), 1);
    note->BeginMultipleFieldUpdate();
    EXPECT_EQ(cancelReminders(store.application(), *note), 1);
    note->CancelMultipleFieldUpdate();
    const Ref<IRecord> read = store.application().Notes()->Item(note->value(kRecordID));
    EXPECT_EQ(read->value(QStringLiteral("ReminderType")), 0);
    EXPECT_TRUE(read->value(QStringLiteral("ChangeDate")).isNull());
    EXPECT_EQ(cancelReminders(store.application(), *note), 0);
}

TEST_F(OperationsTest, AFailureInsideTakesEverythingBack) {
    const qint64 old = store.addNote(QStringLiteral("a"))->value(kRecordID).toLongLong();
    const Ref<Note> shown = query<Note>(store.application().Notes()->Item(QVariant(old)));
    NoteChoices choices;
    choices.Subject = QStringLiteral("b");
    EXPECT_THROW(storeAsOne(store.application(),
                            [&] {
                                createNote(store.application(), store, {}, choices);
                                changeNote(store.application(), store.manualClock(), *shown,
                                           choices);
                                throw AutomationError(kErrorDiskFull, {}, {});
                            }),
                 AutomationError);
    EXPECT_EQ(store.application().Notes()->NewEnum().size(), 1U);
    shown->Refresh();
    EXPECT_EQ(shown->value(QStringLiteral("Subject")), QStringLiteral("a"));
}

TEST_F(OperationsTest, AWholeNoteIsStoredWithTextAndRemindersOrNotAtAll) {
    const QDateTime now = store.manualClock().now();
    NoteChoices choices;
    choices.Kind = ReminderKind::SelectedUsers;
    choices.ReminderDate = now;
    const auto create = [&](const QList<qint64>& recipients) {
        return createWholeNote(store.application(), store, {}, choices,
                               noteText(QStringLiteral("{\\rtf1 }"), QString()), recipients);
    };
    const Ref<Note> note = create({1, 2});
    EXPECT_TRUE(hasNote(store.application(), note->value(kRecordID).toLongLong()));
    EXPECT_EQ(note->value(QStringLiteral("RTFNote")), QStringLiteral("{\\rtf1 }"));
    EXPECT_TRUE(note->value(QStringLiteral("PlainNote")).isNull());
    EXPECT_EQ(note->value(QStringLiteral("ChangeDate")), now);
    EXPECT_EQ(note->NumberOfReminders(), 2);
    store.database()->RunScript("CREATE TRIGGER full BEFORE INSERT ON tblReminders WHEN NEW.UserID "
                                "= 2 BEGIN SELECT RAISE(ABORT, 'full'); END");
    EXPECT_THROW(create({1, 2}), AutomationError);
    EXPECT_EQ(store.application().Notes()->NewEnum().size(), 1U);
    EXPECT_EQ(store.application().Reminders()->NewEnum().size(), 2U);
}

TEST_F(OperationsTest, ATextIsWrittenOnlyOverTheOneItWasMadeFrom) {
    const qint64 id = store.addNote(QStringLiteral("a"))->value(kRecordID).toLongLong();
    const Ref<Note> mine = query<Note>(store.application().Notes()->Item(QVariant(id)));
    const Ref<Note> theirs = query<Note>(store.application().Notes()->Item(QVariant(id)));
    storeText(*theirs, noteText(QStringLiteral("theirs"), QStringLiteral("theirs")), {});
    EXPECT_TRUE(theirs->value(QStringLiteral("ChangeDate")).isNull());
    EXPECT_THROW(storeText(*mine, noteText(QStringLiteral("mine"), QStringLiteral("mine")), {}),
                 dao::ConflictError);
    EXPECT_FALSE(mine->InMultipleUpdate());
    theirs->Refresh();
    EXPECT_EQ(theirs->value(QStringLiteral("RTFNote")), QStringLiteral("theirs"));
}

TEST_F(OperationsTest, DeletingANoteTakesItsRemindersAlong) {
    const Ref<Note> note = store.addNote(QStringLiteral("a"));
    const Ref<Note> other = store.addNote(QStringLiteral("b"));
    const QDateTime now = store.manualClock().now();
    addReminder(store.application(), store.manualClock(), *note, now, 1);
    addReminder(store.application(), store.manualClock(), *other, now, 1);
    deleteNote(store.application(), note->value(kRecordID).toLongLong());
    EXPECT_EQ(store.application().Reminders()->NewEnum().size(), 1U);
    EXPECT_EQ(store.application().Notes()->NewEnum().size(), 1U);
}

} // namespace
} // namespace yrw::test
