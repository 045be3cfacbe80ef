#include "tests/dao/DaoFixture.h"

#include <sqlite3.h>

namespace yrw::dao {

namespace {

class NotesSchemaTest : public DaoTest {
protected:
    qint64 addReminder(qint64 note) {
        return add(*database, u"tblReminders"_qs,
                   {{u"NoteID"_qs, note},
                    {u"UserID"_qs, 7},
                    {u"NextDate"_qs, clock.now()},
                    {u"Status"_qs, 3}});
    }
    Ref<Recordset> due(const QString& progId) {
        return database->OpenQuery(
            u"qryActiveReminders"_qs,
            {{u"progid"_qs, progId}, {u"NumberOfMinutes"_qs, 1}, {u"UserID"_qs, 7}});
    }
};

TEST_F(NotesSchemaTest, RemindersShowTheirNoteOrNothingAndTheDueAreEditable) {
    addReminder(addNote({{u"Subject"_qs, u"call"_qs}, {u"OwnerComponentProgID"_qs, u"Desk"_qs}}));
    addReminder(addNote(u"of no host"_qs));
    addReminder(999);
    const auto all = database->OpenRecordset(u"SELECT qryReminders.* FROM qryReminders"_qs);
    EXPECT_EQ(all->value(u"Status").toInt(), 3) << "the reminder's own state";
    EXPECT_EQ(column(*all, u"Subject").join(u'|'), u"call|of no host|Null");
    EXPECT_EQ(column(*due(u"Other"_qs), u"Subject").join(u'|'), u"of no host");
    const auto rows = due(u"Desk"_qs);
    EXPECT_EQ(rows->value(u"Subject").toString(), u"call");
    rows->Edit();
    rows->setValue(u"NextDate", clock.now().addSecs(900));
    EXPECT_EQ(errorOf([&] { rows->setValue(u"Subject", u"x"_qs); }), kErrorReadOnly);
    rows->Update();
    EXPECT_EQ(column(*due(u"Desk"_qs), u"Subject").join(u'|'), u"of no host");
}

TEST_F(NotesSchemaTest, QueriesTellHowManyRowsTheyTook) {
    const qint64 note = addNote(u"a"_qs);
    addReminder(note);
    addReminder(note);
    EXPECT_EQ(database->ExecuteQuery(u"delReminderByID"_qs, {{u"RecordID"_qs, 1}}), 1);
    EXPECT_EQ(database->ExecuteQuery(u"delNoteByID"_qs, {{u"RecordID"_qs, note}}), 1);
    EXPECT_EQ(database->ExecuteQuery(u"delRemindersByNoteID"_qs, {{u"NoteID"_qs, note}}), 1);
    EXPECT_EQ(database->ExecuteQuery(u"delNoteByID"_qs, {{u"RecordID"_qs, note}}), 0);
    EXPECT_EQ(errorOf([&] {
                  database->ExecuteQuery(u"delNoteByID"_qs, {{u"X"_qs, 1}});
              }),
              kErrorNotInCollection);
    EXPECT_EQ(errorOf([&] { database->ExecuteQuery(u"qryNotes"_qs, {}); }), kErrorNotInCollection);
    EXPECT_EQ(addNote(u"b"_qs), note + 1) << "an id is never given twice";
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
    EXPECT_EQ(database->SchemaVersion(), 3);
}

TEST_F(NotesSchemaTest, EveryViewReadsWithoutThisProgram) {
    addReminder(addNote(u"a"_qs));
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
