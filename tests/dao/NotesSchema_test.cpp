#include "tests/dao/DaoFixture.h"

#include <sqlite3.h>

namespace yrw::dao {

namespace {

class NotesSchemaTest : public DaoTest {
protected:
    qint64 addReminder(qint64 note, const QDateTime& due, const QVariant& status = 1,
                       qint64 user = 7) {
        return add(*database, u"tblReminders"_qs,
                   {{u"NoteID"_qs, note},
                    {u"UserID"_qs, user},
                    {u"NextDate"_qs, due},
                    {u"Status"_qs, status}});
    }
    QStringList due(const QString& progId = u"Desk"_qs, qint64 user = 7) {
        const auto rows = database->OpenQuery(
            u"qryActiveReminders"_qs,
            {{u"progid"_qs, progId}, {u"NumberOfMinutes"_qs, 1}, {u"UserID"_qs, user}});
        return column(*rows, u"RecordID");
    }
    static QDateTime noon(int secondsLater) {
        return QDateTime(QDate(2026, 6, 1), QTime(12, 0)).addSecs(secondsLater);
    }
    qint64 deskNote(int status = 1) {
        return addNote({{u"Subject"_qs, u"call"_qs},
                        {u"Status"_qs, status},
                        {u"OwnerComponentProgID"_qs, u"Desk"_qs},
                        {u"OwnerObjectKey"_qs, u"cu"_qs}});
    }
};

TEST_F(NotesSchemaTest, OnlyOpenRemindersWithinTheWindowAreDueInOrder) {
    const qint64 note = deskNote();
    addReminder(note, noon(60));            // 1: just inside
    addReminder(note, noon(61));            // 2: not yet
    addReminder(note, noon(-86400 * 400));  // 3: fell due while nobody looked
    addReminder(note, noon(0), 4);          // 4: dismissed
    addReminder(note, noon(0), QVariant()); // 5: no state counts as open
    addReminder(note, noon(0), 3);          // 6: later has come
    addReminder(note, noon(0), 1, 8);       // 7: somebody else's
    addReminder(deskNote(2), noon(0));      // 8: of a finished note
    addReminder(999, noon(0));              // 9: of no note
    EXPECT_EQ(due().join(u' '), u"3 5 6 1");
    clock.advance(1);
    EXPECT_EQ(due().join(u' '), u"3 5 6 1 2");
    EXPECT_TRUE(due(u"Other"_qs).isEmpty());
}

TEST_F(NotesSchemaTest, NotesWithoutOwnerBelongToWhoeverAsks) {
    addReminder(addNote({{u"OwnerComponentProgID"_qs, u""_qs}}), noon(0));
    addReminder(addNote(u"no component at all"_qs), noon(0));
    addReminder(addNote({{u"OwnerComponentProgID"_qs, u"Desk"_qs}}), noon(0));
    EXPECT_EQ(due(u"Desk"_qs).size(), 3);
    EXPECT_EQ(due(u"Other"_qs).size(), 2);
}

TEST_F(NotesSchemaTest, DueRemindersShowTheNoteAndAreEditable) {
    addReminder(deskNote(), noon(0));
    const auto rows = database->OpenQuery(
        u"qryActiveReminders"_qs,
        {{u"ProgID"_qs, u"Desk"_qs}, {u"NumberOfMinutes"_qs, 1}, {u"UserID"_qs, 7}});
    EXPECT_EQ(rows->value(u"Subject").toString(), u"call");
    rows->Edit();
    rows->setValue(u"NextDate", noon(900));
    rows->setValue(u"Status", 2);
    EXPECT_EQ(errorOf([&] { rows->setValue(u"Subject", u"x"_qs); }), kErrorReadOnly);
    rows->Update();
    EXPECT_TRUE(due().isEmpty());
    clock.advance(900);
    EXPECT_EQ(due().size(), 1);
}

TEST_F(NotesSchemaTest, CountsAndDeletesByQuery) {
    const qint64 note = deskNote();
    addReminder(note, noon(0));
    addReminder(note, noon(0));
    const auto count = [&](qint64 id) {
        return database->OpenQuery(u"sumCountNoteReminders"_qs, {{u"NoteID"_qs, id}})
            ->value(u"CountOfRecordID")
            .toInt();
    };
    EXPECT_EQ(count(note), 2);
    EXPECT_EQ(count(99), 0);
    EXPECT_EQ(database->ExecuteQuery(u"delReminderByID"_qs, {{u"RecordID"_qs, 1}}), 1);
    EXPECT_EQ(database->ExecuteQuery(u"delNoteByID"_qs, {{u"RecordID"_qs, note}}), 1);
    EXPECT_EQ(count(note), 1) << "a note's reminders stay until they are deleted";
    EXPECT_EQ(database->ExecuteQuery(u"delRemindersByNoteID"_qs, {{u"NoteID"_qs, note}}), 1);
    EXPECT_EQ(database->ExecuteQuery(u"delNoteByID"_qs, {{u"RecordID"_qs, note}}), 0);
    EXPECT_EQ(errorOf([&] {
                  database->ExecuteQuery(u"delNoteByID"_qs, {{u"X"_qs, 1}});
              }),
              kErrorNotInCollection);
    EXPECT_EQ(errorOf([&] { database->ExecuteQuery(u"qryNotes"_qs, {}); }), kErrorNotInCollection);
    EXPECT_EQ(deskNote(), note + 1) << "an id is never given twice";
}

TEST_F(NotesSchemaTest, AnUnknownAuthorShowsByCode) {
    addNote({{u"RecordUserID"_qs, 1}, {u"RecordUserCode"_qs, u"ANNA"_qs}});
    addNote({{u"RecordUserID"_qs, 2}, {u"RecordUserCode"_qs, u"BEN"_qs}});
    addNote(u"nobody's"_qs);
    const auto names = database->OpenRecordset(u"tblUserNames"_qs);
    names->AddNew();
    names->setValue(u"UserID", 1);
    names->setValue(u"UseName", u"Anna B."_qs);
    names->Update();
    EXPECT_EQ(column(*database->OpenRecordset(u"qryNotes"_qs), u"UseName").join(u'|'),
              u"Anna B.|BEN|Null");
}

TEST_F(NotesSchemaTest, RemindersShowTheirNoteOrNothing) {
    addReminder(deskNote(2), noon(0), 3);
    addReminder(999, noon(0));
    const auto rows = database->OpenRecordset(u"SELECT qryReminders.* FROM qryReminders"_qs);
    EXPECT_EQ(rows->value(u"Status").toInt(), 3) << "the reminder's own state";
    EXPECT_EQ(column(*rows, u"Subject").join(u'|'), u"call|Null");
}

TEST_F(NotesSchemaTest, ShipsOneRowOfSettingsAndTellsItsTypes) {
    const auto settings = database->OpenRecordset(u"SELECT tblSettings.* FROM tblSettings"_qs);
    EXPECT_TRUE(settings->value(u"HighlightRowColour").isNull());
    EXPECT_EQ(database->OpenRecordset(u"qrySystem"_qs)->RecordCount(), 1);
    const auto notes = database->OpenRecordset(u"qryNotes"_qs, RecordsetType::Dynaset);
    const std::pair<const char*, FieldType> types[] = {
        {"RecordID", FieldType::Long},      {"NoteID", FieldType::Long},
        {"Subject", FieldType::Text},       {"RTFNote", FieldType::Memo},
        {"Status", FieldType::Integer},     {"AutomaticallyShow", FieldType::Boolean},
        {"OwnerRecordID", FieldType::Long}, {"Date", FieldType::Date},
    };
    for (const auto& [name, type] : types) {
        EXPECT_EQ(notes->Field(QString::fromLatin1(name))->Type(), type) << name;
    }
    EXPECT_EQ(database->SchemaVersion(), 2);
}

TEST_F(NotesSchemaTest, EveryViewReadsWithoutThisProgram) {
    addReminder(deskNote(), noon(0));
    database->Close();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(qPrintable(path()), &other), SQLITE_OK);
    for (const char* view : {"qryNotes", "qryReminders", "qrySystem"}) {
        const std::string sql = std::string("SELECT count(*) FROM ") + view;
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(other, sql.c_str(), -1, &statement, nullptr), SQLITE_OK);
        EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
        EXPECT_EQ(sqlite3_column_int(statement, 0), 1) << view;
        sqlite3_finalize(statement);
    }
    sqlite3_close(other);
}

} // namespace

} // namespace yrw::dao
