// Finding rows by words, and what keeps the index right while others write.
#include "platform/dao/Folding.h"
#include "platform/dao/TextIndex.h"
#include "tests/dao/DaoFixture.h"

#include <sqlite3.h>

#include <algorithm>

namespace yrw::dao {

namespace {

class TextIndexTest : public DaoTest {
protected:
    qint64 note(const char* subject, const char* text = nullptr) {
        ValueList values{{u"Subject"_qs, QString::fromUtf8(subject)}};
        if (text != nullptr) {
            values.set(u"PlainNote"_qs, QString::fromUtf8(text));
        }
        return addNote(values);
    }
    /// Adds many notes "Call about order 000123" with ids from 1.
    void addMany(int count) {
        database->RunScript(
            QStringLiteral("INSERT INTO tblNotes(Subject) WITH RECURSIVE n(i) AS (SELECT 1 UNION "
                           "ALL SELECT i + 1 FROM n WHERE i < %1) SELECT "
                           "printf('Call about order %06d', i) FROM n")
                .arg(count));
    }
    std::unique_ptr<TextIndex> open(const Ref<Database>& in) const {
        return in->textIndex({u"tblNotes"_qs,
                              u"RecordID"_qs,
                              {u"Subject"_qs, u"PlainNote"_qs},
                              u"tblNotesText"_qs,
                              u"tblNotesToIndex"_qs});
    }
    /// The ids found among all notes, in order, each slice as short as can be.
    QString found(const char* typed) {
        std::vector<qint64> keys;
        const auto rows = database->OpenRecordset(u"tblNotes"_qs, RecordsetType::ForwardOnly);
        for (; !rows->AtEof(); rows->MoveNext()) {
            keys.push_back(rows->value(u"RecordID").toLongLong());
        }
        const auto search = index->search(foldedWords(QString::fromUtf8(typed)), std::move(keys));
        std::vector<qint64> all;
        while (!search->atEnd()) {
            const std::vector<qint64> some = search->next(0);
            all.insert(all.end(), some.begin(), some.end());
        }
        std::sort(all.begin(), all.end());
        QStringList texts;
        for (const qint64 key : all) {
            texts.append(QString::number(key));
        }
        return texts.join(u' ');
    }
    void catchUp() {
        while (index->catchUp(1000)) {
        }
    }
    /// What another program does to the file, without this one's help.
    void elsewhere(const char* sql) const {
        sqlite3* other = nullptr;
        ASSERT_EQ(sqlite3_open(qPrintable(path()), &other), SQLITE_OK);
        char* problem = nullptr;
        EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, &problem), SQLITE_OK) << problem;
        sqlite3_close(other);
    }

    std::unique_ptr<TextIndex> index = open(database);
};

TEST_F(TextIndexTest, FindsInsideWordsBeforeAndAfterRowsAreTakenIn) {
    note("Müller: Vertrag", "verlängern");
    note("muller", "Übermorgen anrufen");
    note("100% \"quoted\"", "a_b");
    const std::pair<const char*, const char*> cases[] = {
        {"MULLER", "1 2"}, {"vertrag müll", "1"}, {"langern vert", "1"}, {"morgen", "2"},
        {"ub", "2"},       {"a", "1 2 3"},        {"0%", "3"},           {"\"quo", "3"},
        {"a_b", "3"},      {"mull xyz", ""},      {"vertrag verl", "1"}, {"vertragverl", ""},
    };
    for (const bool taken : {false, true}) {
        if (taken) {
            catchUp();
            EXPECT_EQ(index->waiting(), 0);
        }
        for (const auto& [typed, ids] : cases) {
            EXPECT_EQ(found(typed), ids) << typed << (taken ? " taken in" : " waiting");
        }
    }
}

TEST_F(TextIndexTest, WhatOtherProgramsWriteIsFoundAtOnce) {
    addMany(5000); // enough that the index is asked
    catchUp();
    EXPECT_EQ(found("004711"), "4711");
    elsewhere("UPDATE tblNotes SET PlainNote = 'Zürich' WHERE RecordID IN (7, 8);"
              "UPDATE tblNotes SET Subject = 'Other' WHERE RecordID = 4711;"
              "INSERT INTO tblNotes(Subject) VALUES ('zurich too');"
              "UPDATE tblNotes SET RecordID = 9000 WHERE RecordID = 8;"
              "DELETE FROM tblNotes WHERE RecordID = 9;"
              "REPLACE INTO tblNotes(RecordID, Subject) VALUES (10, 'zurich again')");
    for (const bool taken : {false, true}) {
        if (taken) {
            EXPECT_EQ(index->waiting(), 7);
            catchUp();
        }
        EXPECT_EQ(found("zurich"), "7 10 5001 9000");
        EXPECT_EQ(found("004711"), "");
        EXPECT_EQ(found("order 000009"), "");
        EXPECT_EQ(found("order 00499"), "499 4990 4991 4992 4993 4994 4995 4996 4997 4998 4999");
    }
}

TEST_F(TextIndexTest, WhatWasWrittenPastItIsNoticedAndRepaired) {
    const std::pair<const char*, const char*> ways[] = {
        {"a table that was rebuilt",
         "CREATE TABLE t2 AS SELECT * FROM tblNotes; DROP VIEW qryNotes; DROP VIEW qryReminders;"
         "DROP TABLE tblNotes; CREATE TABLE tblNotes (RecordID INTEGER PRIMARY KEY, Subject TEXT, "
         "PlainNote LONGTEXT); INSERT INTO tblNotes SELECT RecordID, Subject, 'moved' FROM t2"},
        {"no index", "DROP TABLE tblNotesText; UPDATE tblNotes SET PlainNote = 'moved'"},
        {"no list", "DROP TABLE tblNotesToIndex; DROP TRIGGER tblNotesTextChanged;"
                    "UPDATE tblNotes SET PlainNote = 'moved'"},
        {"rows added while the triggers were gone",
         "UPDATE tblNotes SET PlainNote = 'moved'; DELETE FROM tblNotesToIndex WHERE RecordID = 2;"
         "DELETE FROM tblNotesText WHERE rowid = 2"},
    };
    for (const auto& [name, sql] : ways) {
        SCOPED_TRACE(name);
        database->DeleteRows(u"tblNotes"_qs, u"Status"_qs, 1);
        add(*database, u"tblNotes"_qs, {{u"RecordID"_qs, 1}, {u"Subject"_qs, u"one"_qs}});
        add(*database, u"tblNotes"_qs, {{u"RecordID"_qs, 2}, {u"Subject"_qs, u"two"_qs}});
        catchUp();
        elsewhere(sql);
        catchUp();
        index->repair();
        catchUp();
        index->repair();
        EXPECT_EQ(index->waiting(), 0);
        EXPECT_EQ(found("moved"), "1 2");
        database->Close();
        ASSERT_TRUE(QFile::remove(path()));
        makeDatabase();
        index = open(database);
    }
}

TEST_F(TextIndexTest, ADamagedIndexCostsNoHitAndIsMadeAnew) {
    addMany(4000);
    catchUp();
    elsewhere("UPDATE tblNotesText_data SET block = x'ff00ff00ff' WHERE id > 10");
    EXPECT_EQ(found("order 003999"), "3999");
    index->repair();
    catchUp();
    EXPECT_EQ(found("order 003999"), "3999");
    EXPECT_TRUE(database->CheckIntegrity().isEmpty());
}

TEST_F(TextIndexTest, ManySlicesFindEachRowOnce) {
    addMany(4000);
    catchUp();
    EXPECT_EQ(found("call").count(u' '), 3999);
    EXPECT_EQ(found("1").count(u' '), 1812); // with a 1 somewhere, looked through one by one
}

TEST_F(TextIndexTest, WaitsForNobody) {
    note("one");
    const Ref<Database> other = another();
    {
        const Transaction blocking(*other);
        EXPECT_FALSE(index->catchUp(1000));
        EXPECT_EQ(index->waiting(), 1);
    }
    catchUp();
    EXPECT_EQ(index->waiting(), 0);

    note("two");
    const Ref<Database> readOnly = createWorkspace({clock, files})->OpenDatabase(path(), {true});
    index = open(readOnly);
    index->repair();
    EXPECT_FALSE(index->catchUp(1000));
    EXPECT_EQ(found("two"), "2");
}

} // namespace

} // namespace yrw::dao
