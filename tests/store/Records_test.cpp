#include "tests/support/NotesFixture.h"
#include "tests/support/Raised.h"

namespace yrw::test {
namespace {

const QString kSubject = QStringLiteral("Subject");
const QString kPlainNote = QStringLiteral("PlainNote");
const QString kStatus = QStringLiteral("Status");

/// One note, held by two readers as two users of one database hold it.
class RecordsTest : public NotesFixture {
protected:
    Ref<Note> mine = store.addNote(QStringLiteral("first"));
    Ref<Note> theirs = read();

    Ref<Note> read() {
        return query<Note>(
            store.application().Notes()->Item(mine->value(QStringLiteral("RecordID"))));
    }
    void TearDown() override {
        mine.reset();
        theirs.reset();
    }
};

TEST_F(RecordsTest, AssigningAFieldStoresItAtOnceAndStampsTheChanger) {
    store.actAs(2);
    mine->Field(QStringLiteral("SUBJECT"))->setValue(QStringLiteral("second"));
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("second"));
    EXPECT_EQ(read()->value(kSubject), QStringLiteral("second"));
    EXPECT_EQ(read()->value(QStringLiteral("ChangeUserCode")), QStringLiteral("BEN"));
    EXPECT_EQ(read()->value(QStringLiteral("RecordUserID")), 1);
}

TEST_F(RecordsTest, PendingFieldsReadTheirOldValueAndCancelledOnesAreNotWritten) {
    mine->BeginMultipleFieldUpdate();
    mine->Field(kSubject)->setValue(QStringLiteral("x"));
    EXPECT_TRUE(mine->CancelMultipleFieldUpdate());
    EXPECT_FALSE(mine->InMultipleUpdate());
    mine->BeginMultipleFieldUpdate();
    EXPECT_TRUE(mine->EndMultipleFieldUpdate());
    EXPECT_TRUE(read()->value(QStringLiteral("ChangeUserCode")).isNull());
    EXPECT_TRUE(mine->BeginMultipleFieldUpdate());
    EXPECT_TRUE(mine->InMultipleUpdate());
    mine->Field(kSubject)->setValue(QStringLiteral("x"));
    mine->MultipleUpdateFieldValues().set(QStringLiteral("subject"), QStringLiteral("second"));
    mine->MultipleUpdateFieldValues().set(kPlainNote, QStringLiteral("text"));
    EXPECT_EQ(mine->MultipleUpdateFieldValues().count(), 2);
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("first"));
    EXPECT_EQ(read()->value(kSubject), QStringLiteral("first"));
    EXPECT_TRUE(mine->EndMultipleFieldUpdate());
    EXPECT_FALSE(mine->InMultipleUpdate());
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("second"));
    EXPECT_EQ(read()->value(kPlainNote), QStringLiteral("text"));
}

TEST_F(RecordsTest, SetValueWritesNothing) {
    mine->SetValue(kSubject, QStringLiteral("x"));
    mine->SetValue(QStringLiteral("Nonsense"), 1);
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("x"));
    EXPECT_EQ(read()->value(kSubject), QStringLiteral("first"));
    mine->Refresh();
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("first"));
}

TEST_F(RecordsTest, AnotherKeyInTheValueArrayIsNotAnotherRecord) {
    const Ref<Note> other = store.addNote(QStringLiteral("other"));
    const QString key = QStringLiteral("RecordID");
    const QVariant otherKey = other->value(key);
    const QDateTime now = store.manualClock().now();
    addReminder(store.application(), store.manualClock(), *other, now, 1);
    mine->SetValue(key, otherKey);
    mine->SetValue(QStringLiteral("NoteID"), otherKey);
    EXPECT_EQ(mine->value(key), otherKey);

    mine->Field(kSubject)->setValue(QStringLiteral("second"));
    mine->BeginMultipleFieldUpdate();
    mine->Field(kPlainNote)->setValue(QStringLiteral("text"));
    mine->EndMultipleFieldUpdate();
    EXPECT_EQ(mine->NumberOfReminders(), 0);
    EXPECT_EQ(mine->DeleteReminders(), 0);
    EXPECT_TRUE(mine->Reminders()->NewEnum().empty());
    mine->Refresh();
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("second"));
    EXPECT_EQ(mine->value(kPlainNote), QStringLiteral("text"));
    other->Refresh();
    EXPECT_EQ(other->value(kSubject), QStringLiteral("other"));
    EXPECT_TRUE(other->value(kPlainNote).isNull());
    EXPECT_EQ(other->NumberOfReminders(), 1);
}

TEST_F(RecordsTest, RefreshTakesOnlyTheValues) {
    const Ref<Notes> notes = store.application().Notes();
    const Ref<dao::Recordset> rows = notes->Recordset({});
    const Ref<IRecord> record = notes->Item(rows);
    const FieldDictionaryPtr fields = record->Fields();
    const dao::Bookmark bookmark = record->Bookmark();
    theirs->Field(kSubject)->setValue(QStringLiteral("theirs"));
    record->Refresh();
    EXPECT_EQ(record->value(kSubject), QStringLiteral("theirs"));
    EXPECT_EQ(record->Fields(), fields);
    EXPECT_EQ(record->Bookmark(), bookmark);
    EXPECT_EQ(record->Recordset(), rows);
}

TEST_F(RecordsTest, SomebodyElsesChangeIsNotOverwritten) {
    theirs->Field(kSubject)->setValue(QStringLiteral("theirs"));
    mine->BeginMultipleFieldUpdate();
    mine->MultipleUpdateFieldValues().set(kPlainNote, QStringLiteral("mine"));
    mine->MultipleUpdateFieldValues().set(kSubject, QStringLiteral("mine"));
    try {
        mine->EndMultipleFieldUpdate();
        FAIL() << "no conflict was raised";
    } catch (const dao::ConflictError& conflict) {
        EXPECT_EQ(conflict.number(), kErrorConflict);
        EXPECT_EQ(conflict.description(),
                  "Somebody else has changed Subject since the record was read.");
        ASSERT_EQ(conflict.current().count(), 1);
        EXPECT_EQ(conflict.current().value(kSubject), QStringLiteral("theirs"));
    }
    EXPECT_TRUE(mine->InMultipleUpdate()) << "the update stays open";
    EXPECT_EQ(read()->value(kSubject), QStringLiteral("theirs"));
    EXPECT_TRUE(read()->value(kPlainNote).isNull()) << "nothing is written by halves";

    mine->Refresh(); // seen; the user insists
    EXPECT_TRUE(mine->EndMultipleFieldUpdate());
    EXPECT_EQ(read()->value(kSubject), QStringLiteral("mine"));
}

TEST_F(RecordsTest, ChangesOfOtherFieldsDoNotBlock) {
    const QDateTime now = store.manualClock().now();
    theirs->setDone(true);
    theirs->Field(QStringLiteral("ChangeDate"))->setValue(now.addSecs(60));
    mine->BeginMultipleFieldUpdate();
    mine->MultipleUpdateFieldValues().set(kPlainNote, QStringLiteral("text"));
    mine->MultipleUpdateFieldValues().set(QStringLiteral("ChangeDate"), now);
    EXPECT_TRUE(mine->EndMultipleFieldUpdate());
    EXPECT_TRUE(read()->Done());
    mine->setDone(true); // the same answer twice is no conflict
    mine->setDone(false);
    EXPECT_EQ(read()->value(kStatus), 1);
}

TEST_F(RecordsTest, WhatTheDatabaseRoundsIsNoConflict) {
    const QString date = QStringLiteral("Date");
    const QDateTime now = store.manualClock().now();
    mine->Field(date)->setValue(now.addMSecs(250));
    EXPECT_EQ(mine->value(date), now);
    mine->Field(date)->setValue(now.addSecs(60));
    mine->Field(kStatus)->setValue(QStringLiteral("2"));
    mine->Field(kStatus)->setValue(1);
    EXPECT_EQ(read()->value(date), now.addSecs(60));
}

TEST_F(RecordsTest, AnUpdateOfADeletedNoteSaysSo) {
    deleteNote(store.application(), mine->value(QStringLiteral("RecordID")).toLongLong());
    const auto update = [&] { mine->Field(kSubject)->setValue(QStringLiteral("x")); };
    EXPECT_EQ(raisedBy(update).number(), kErrorRecordNotFound);
    EXPECT_EQ(mine->value(kSubject), QStringLiteral("first"));
}

} // namespace
} // namespace yrw::test
