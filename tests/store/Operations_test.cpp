#include "store/MarkSettings.h"
#include "store/NoteReading.h"
#include "store/NotesSeek.h"
#include "tests/support/NotesFixture.h"

namespace yrw::test {
namespace {

const QString kRecordID = QStringLiteral("RecordID");

using OperationsTest = NotesFixture;

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

TEST_F(OperationsTest, WhatAColleagueChangedOfAShownNoteIsNotDeletedUnasked) {
    const std::pair<const char*, bool> cases[] = {
        {"UPDATE tblNotes SET Subject = 'theirs'", false},
        {"UPDATE tblNotes SET PlainNote = 'theirs'", false},
        {"UPDATE tblNotes SET RTFNote = 'theirs'", false},
        {"UPDATE tblNotes SET Status = 2", true},
        {"DELETE FROM tblNotes", true},
    };
    for (const auto& [script, isDeleted] : cases) {
        const Ref<Note> shown = store.addNote(QStringLiteral("a"));
        const qint64 id = shown->value(kRecordID).toLongLong();
        store.database()->RunScript(QLatin1String(script));
        if (isDeleted) {
            deleteNote(store.application(), id, shown.get());
        } else {
            EXPECT_THROW(deleteNote(store.application(), id, shown.get()), dao::ConflictError);
        }
        EXPECT_EQ(hasNote(store.application(), id), !isDeleted) << script;
    }
}

TEST_F(OperationsTest, OnlyChosenPropertiesAreWrittenAndAShownNoteTakesAllOverButItsText) {
    NoteChoices choices;
    choices.Subject = QStringLiteral("a");
    choices.Date = store.manualClock().now();
    const Ref<Note> shown = createNote(store.application(), store, {}, choices);
    store.database()->RunScript("UPDATE tblNotes SET Subject = 'theirs', PlainNote = 'theirs'");
    choices.AutomaticallyShow = true;
    const Ref<Note> changed = changeNote(store.application(), store.manualClock(), *shown, choices);
    EXPECT_EQ(changed->value(QStringLiteral("Subject")), QStringLiteral("theirs"));
    takeOverProperties(*shown, *changed);
    EXPECT_EQ(shown->value(QStringLiteral("Subject")), QStringLiteral("theirs"));
    EXPECT_EQ(shown->value(QStringLiteral("AutomaticallyShow")), true);
    EXPECT_THROW(storeText(*shown, noteText(QStringLiteral("mine"), QStringLiteral("mine")), {}),
                 dao::ConflictError)
        << "nobody has seen their text";
}

TEST_F(OperationsTest, ReadsWhatARecordShowsAndMarks) {
    const OwnerKey larch{QStringLiteral("cu"), 2};
    const auto addFor = [&](const char* subject, qint64 id, const QString& host, NoteStatus status,
                            bool isAutomatic) {
        qint64 key = 0;
        store.application().Notes()->Add({{QStringLiteral("Subject"), QLatin1String(subject)},
                                          {QStringLiteral("Status"), int(status)},
                                          {QStringLiteral("OwnerComponentProgID"), host},
                                          {QStringLiteral("OwnerObjectKey"), larch.objectKey},
                                          {QStringLiteral("OwnerRecordID"), id},
                                          {QStringLiteral("AutomaticallyShow"), isAutomatic}},
                                         nullptr, key, true);
        return key;
    };
    const QString host = kFakeHostProgID;
    const qint64 plain = addFor("plain", 2, host, NoteStatus::Active, false);
    addFor("automatic", 2, host, NoteStatus::Active, true);
    addFor("done", 2, host, NoteStatus::Done, true);
    addFor("of another host", 2, QStringLiteral("Other.Application"), NoteStatus::Active, true);
    addFor("of another record", 3, host, NoteStatus::Active, true);
    const auto subjects = [](const Ref<dao::Recordset>& notes) {
        QStringList found;
        for (; !notes->AtEof(); notes->MoveNext()) {
            found += notes->value(u"Subject").toString();
        }
        notes->Close();
        found.sort();
        return found;
    };
    const HostDataHelper& helper = store.dataHelper();
    EXPECT_EQ(subjects(openActiveNotes(helper, host, larch)), QStringList({"automatic", "plain"}));
    EXPECT_EQ(subjects(openAutomaticNotes(helper, host, larch)), QStringList("automatic"));

    EXPECT_EQ(ownerOfNote(helper, plain)->objectKey, larch.objectKey);
    EXPECT_EQ(ownerOfNote(helper, plain)->recordID, larch.recordID);
    EXPECT_TRUE(
        ownerOfNote(helper, store.addNote(QStringLiteral("system"))->value(kRecordID).toLongLong())
            ->objectKey.isNull());
    EXPECT_FALSE(ownerOfNote(helper, 99).has_value());

    NotesSeek seek;
    OwnerKeys keys{host, larch.objectKey, larch.recordID, int(NoteStatus::Active)};
    EXPECT_FALSE(seek.hasNote(keys)); // it is not open
    seek.open(store.database());
    EXPECT_TRUE(seek.hasNote(keys));
    keys[2] = 1;
    EXPECT_FALSE(seek.hasNote(keys));
    seek.close();
}

TEST_F(OperationsTest, ReadsHowRowsAreMarked) {
    const HostDataHelper& helper = store.dataHelper();
    const struct {
        const char* script;
        int colour;
    } cases[] = {
        {"UPDATE tblSettings SET HighlightRowColour = 255;", 255},
        {"UPDATE tblSettings SET HighlightRowColour = 0;", schema::kDefaultHighlight},
        {"UPDATE tblSettings SET HighlightRowColour = NULL;", schema::kDefaultHighlight},
        {"DELETE FROM tblSettings;", schema::kDefaultHighlight},
        {"DROP TABLE tblSettings;", schema::kDefaultHighlight},
    };
    for (const auto& each : cases) {
        store.database()->RunScript(QLatin1String(each.script));
        EXPECT_EQ(readHighlightColour(helper), each.colour) << each.script;
    }
    store.database()->RunScript(QStringLiteral("INSERT INTO tblLinkedColumnDefs (GridLayoutName, "
                                               "GridField) VALUES ('Standard', 'Name');"));
    EXPECT_TRUE(isLinkedColumn(helper, QStringLiteral("Name"), QStringLiteral("Standard")));
    EXPECT_FALSE(isLinkedColumn(helper, QStringLiteral("Name"), QStringLiteral("Wide")));
    EXPECT_FALSE(isLinkedColumn(helper, QStringLiteral("Town"), QStringLiteral("Standard")));
}

} // namespace
} // namespace yrw::test
