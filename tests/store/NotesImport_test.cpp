// Bringing notes of the older format along: the sample, twice, into other notes, and in trouble.
#include "platform/dao/Schema.h"
#include "platform/jet/JetFile.h"
#include "store/DatabaseCheck.h"
#include "store/NotesImport.h"
#include "tests/support/FullDisk.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/OldDatabase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace yrw;
using yrw::test::FullDisk;
using yrw::test::OldDatabase;
using yrw::test::TestStore;

namespace {

const QString kSubject = QStringLiteral("Subject");

class NotesImport : public testing::Test {
protected:
    NotesImport() { sample.write(oldFile); }

    ImportEnd import(const QString& path) {
        report = {};
        return importIntoNewFile(oldFile, path, engine, choices, step, report);
    }
    ImportEnd merge(TestStore& store) {
        report = {};
        return mergeOldNotes(oldFile, *store.database(), engine, choices, step, report);
    }
    Ref<dao::Database> open(const QString& path) {
        workspace = dao::createWorkspace(engine);
        return workspace->OpenDatabase(path);
    }
    /// Rows of a table as the sample's description writes them, in the order of their keys.
    static QJsonArray rowsOf(dao::Database& database, const QString& table,
                             const QStringList& fields) {
        QJsonArray rows;
        const Ref<dao::Recordset> found = database.OpenRecordset(table);
        for (; !found->AtEof(); found->MoveNext()) {
            QJsonObject row;
            for (const QString& field : fields) {
                row.insert(field, test::sampleValue(found->value(field)));
            }
            rows.append(row);
        }
        return rows;
    }
    /// The values of a field, separated by blanks.
    static QString column(dao::Database& database, const QString& table, const QString& field) {
        QStringList values;
        const Ref<dao::Recordset> rows = database.OpenRecordset(table);
        for (; !rows->AtEof(); rows->MoveNext()) {
            values += rows->value(field).toString();
        }
        return values.join(u' ');
    }
    /// Puts other bytes in the place of those, which are there once.
    void patch(const QByteArray& from, const QByteArray& to) {
        ASSERT_EQ(sample.bytes().count(from), 1);
        sample.bytes().replace(from, to);
        sample.write(oldFile);
    }
    static QByteArray utf16(const char* text) {
        const QString units = QString::fromLatin1(text);
        return {reinterpret_cast<const char*>(units.utf16()), units.size() * 2};
    }
    [[nodiscard]] QString linesWith(const QString& text) const {
        return report.lines().filter(text).join(u'\n');
    }

    QTemporaryDir folder;
    QString oldFile = folder.filePath(QStringLiteral("old.mdb"));
    QString newFile = folder.filePath(kNotesDatabaseName);
    OldDatabase sample;
    FileSystem files;
    dao::EngineServices engine{Clock::instance(), files};
    ImportChoices choices;
    WorkStep step;
    ImportReport report;
    Ref<dao::Workspace> workspace;
};

TEST_F(NotesImport, EveryRowOfTheSampleArrivesAsItWas) {
    ASSERT_EQ(import(newFile), ImportEnd::Imported);
    EXPECT_TRUE(report.isComplete()) << report.losses().join(u'\n').toStdString();
    QJsonObject expected =
        QJsonDocument::fromJson(test::sampleFile(QStringLiteral("expected.json"))).object();
    expected.remove(QStringLiteral("_about"));
    const Ref<dao::Database> database = open(newFile);
    for (const QString& table : expected.keys()) {
        const QJsonArray wanted = expected.value(table).toArray();
        EXPECT_EQ(QJsonDocument(rowsOf(*database, table, wanted[0].toObject().keys()))
                      .toJson()
                      .toStdString(),
                  QJsonDocument(wanted).toJson().toStdString());
    }
    // What the check finds, the report has said.
    QStringList found;
    for (const Finding& finding : findProblems(workspace, database, {}).findings) {
        found += QStringLiteral("%1 %2").arg(finding.table).arg(finding.recordID);
    }
    EXPECT_EQ(found.join(u' ').toStdString(), "tblNotes 2 tblNotes 13 tblReminders 7");
    EXPECT_EQ(linesWith(QStringLiteral("Status")).count(u'\n'), 1);
    EXPECT_TRUE(linesWith(QStringLiteral("note 5 ")).startsWith(u"tblReminders 7:"));
}

TEST_F(NotesImport, NewNotesGetNoKeyThatAReminderStillHas) {
    const QByteArray reminder("\7\0\0\0\5\0\0\0\1\0\0\0", 12); // 7, of note 5, which is gone
    patch(reminder, QByteArray(reminder).replace(4, 2, QByteArray("\x84\3", 2)));
    ASSERT_EQ(import(newFile), ImportEnd::Imported);
    const Ref<dao::Recordset> notes = open(newFile)->OpenRecordset(schema::kTblNotes);
    EXPECT_EQ(notes->RecordCount(), 12);
    notes->AddNew();
    notes->Update();
    EXPECT_EQ(notes->LastModified().place(), 901);
}

TEST_F(NotesImport, AFileAddsItsNotesOnceUnderNewKeysWithTheirReminders) {
    TestStore store;
    store.addNote(QStringLiteral("Here before"));
    ASSERT_EQ(merge(store), ImportEnd::Imported);
    dao::Database& database = *store.database();
    EXPECT_EQ(column(database, schema::kTblNotes, QStringLiteral("RecordID")).toStdString(),
              "1 2 3 4 5 6 7 8 9 10 11 12 13");
    EXPECT_EQ(column(database, schema::kTblReminders, QStringLiteral("NoteID")).toStdString(),
              "2 3 4 6 6 12 7");
    EXPECT_EQ(linesWith(QStringLiteral("left out")).toStdString(),
              "tblReminders 7: left out: its note 5 is not in the file");
    // Again, when a note that came was deleted, and one was changed in the old file since.
    deleteNote(store.application(), 12, nullptr);
    patch(utf16("Only a file"), utf16("Only a text"));
    choices.programs.insert(QStringLiteral("YRWDesk.Application"), QStringLiteral("Other"));
    ASSERT_EQ(merge(store), ImportEnd::Imported);
    EXPECT_EQ(column(database, schema::kTblNotes, QStringLiteral("RecordID")).count(u' '), 11);
    EXPECT_EQ(column(database, schema::kTblReminders, QStringLiteral("NoteID")).count(u' '), 5);
    EXPECT_EQ(report.tables[0].written + report.tables[1].written, 0);
    EXPECT_EQ(report.losses().first().toStdString(),
              "tblNotes 10: left out: it came before, and was changed in the old file since");
}

TEST_F(NotesImport, AFileThatWasImportedAddsNothingTwice) {
    ASSERT_EQ(import(folder.filePath(QStringLiteral("first.mdb"))), ImportEnd::Imported);
    TestStore store;
    QFile::remove(store.notesPath());
    store.database()->Close();
    ASSERT_EQ(import(store.notesPath()), ImportEnd::Imported);
    store.openNotes();
    ASSERT_EQ(merge(store), ImportEnd::Imported);
    EXPECT_TRUE(report.isComplete());
    for (const ImportedTable& table : report.tables) {
        EXPECT_EQ(table.present, table.read) << table.name.toStdString();
        EXPECT_EQ(table.written, 0) << table.name.toStdString();
    }
}

TEST_F(NotesImport, ProgramsOwnersAndUsersAreMapped) {
    choices.programs = {{QStringLiteral("yrwdesk.application"), QStringLiteral("New.App")},
                        {QStringLiteral("YRWDesk.Orders"), QStringLiteral("New.Orders")}};
    choices.ownerKeys = {{QStringLiteral("or"), QStringLiteral("zo")}};
    choices.users = {{QStringLiteral("Tom"), QStringLiteral("THEO")},
                     {QStringLiteral("3"), QStringLiteral("30")},
                     {QStringLiteral("ANNA"), QStringLiteral("NOBODY")}};
    choices.knownUsers = {{20, QStringLiteral("THEO"), QStringLiteral("Theo")},
                          {30, QStringLiteral("JAN2"), QStringLiteral("Jan")}};
    ASSERT_EQ(import(newFile), ImportEnd::Imported);
    const Ref<dao::Database> database = open(newFile);
    const std::pair<const char*, const char*> wanted[] = {
        {"OwnerComponentProgID", "New.App New.App New.App New.App New.App New.App New.App New.App "
                                 "New.App New.App New.App "},
        {"OwnerObjectKey", "cu cu zo cu zo zo cu zo cu   "},
        {"RecordUserID", "1 1 1 30 1 20 1 1 1 1 1 "},
        {"RecordUserCode", "NOBODY NOBODY NOBODY JAN2 NOBODY THEO NOBODY NOBODY NOBODY NOBODY "
                           "NOBODY "}};
    for (const auto& [field, values] : wanted) {
        EXPECT_EQ(column(*database, schema::kTblNotes, QString::fromLatin1(field)).toStdString(),
                  values);
    }
    EXPECT_EQ(column(*database, schema::kTblReminders, QStringLiteral("UserID")).toStdString(),
              "1 1 20 1 30 20 1 20");
    EXPECT_EQ(
        column(*database, schema::kTblLinkedColumnDefs, QStringLiteral("ObjectKey")).toStdString(),
        "cu zo");
    EXPECT_FALSE(linesWith(QStringLiteral("NOBODY")).isEmpty());
}

TEST_F(NotesImport, WhatIsNotWholeIsThereAndTold) {
    struct Case {
        const char* what;
        std::function<void(QByteArray&)> damage;
        QStringList told; ///< nothing: one sentence that names the file
    };
    const Case cases[] = {
        {"rich text without its beginning",
         [](QByteArray& bytes) { bytes.replace(utf16("{\\rtf1"), utf16("<html>")); },
         {QStringLiteral("tblNotes 1 to 4, 6 to 7, 10 to 13: the rich text cannot be read; it is "
                         "kept, and the plain text is shown")}},
        {"cut in half",
         [](QByteArray& bytes) { bytes.truncate(bytes.size() / 2); },
         {QStringLiteral("tblNotes 7: RTFNote is cut off"),
          QStringLiteral("tblReminders: the file tells of 8 row(s); the others were not found")}},
        {"another table",
         [](QByteArray& bytes) { bytes.replace(utf16("tblSystem"), utf16("tblSister")); },
         {QStringLiteral("tblSystem: the table was not found"),
          QStringLiteral("tblSister: left out, the notes database has no such table")}},
        {"another column",
         [](QByteArray& bytes) {
             bytes.replace(utf16("HighlightRowColour"), utf16("HighlightRowColor2"));
         },
         {QStringLiteral("tblSettings: the field HighlightRowColor2 is left out, the notes "
                         "database has no such field")}},
        {"no notes",
         [](QByteArray& bytes) { bytes.replace(utf16("tblNotes"), utf16("tblCoins")); },
         {}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        OldDatabase damaged;
        one.damage(damaged.bytes());
        damaged.write(oldFile);
        QFile::remove(newFile);
        try {
            ASSERT_EQ(import(newFile), ImportEnd::Imported);
            EXPECT_TRUE(open(newFile)->CheckIntegrity().isEmpty());
            for (const QString& line : one.told) {
                EXPECT_TRUE(report.lines().contains(line))
                    << report.lines().join(u'\n').toStdString();
            }
        } catch (const AutomationError& error) {
            EXPECT_TRUE(one.told.isEmpty() && error.description().contains(oldFile))
                << error.description().toStdString();
            EXPECT_FALSE(QFile::exists(newFile));
        }
    }
}

TEST_F(NotesImport, NothingIsLeftOfOneThatDoesNotEndWell) {
    struct Case {
        const char* what;
        std::function<void()> begin;
        int error; ///< 0: it was stopped
    };
    std::unique_ptr<FullDisk> disk;
    const Case cases[] = {
        {"stopped", [&] { step = [](int) { return false; }; }, 0},
        {"disk full", [&] { disk = std::make_unique<FullDisk>(300'000); }, kErrorDiskFull},
        {"reader dies", [&] { choices.reader = QStringLiteral("/bin/false"); }, kErrorNotADatabase},
        {"no reader", [&] { choices.reader = folder.filePath(QStringLiteral("none")); },
         kErrorCannotOpenDatabase},
        {"name taken", [&] { newFile = oldFile; }, kErrorCannotOpenDatabase},
        {"no old file", [&] { oldFile += u'x'; }, kErrorCannotOpenDatabase},
        {"dry run", [&] { choices.isDryRun = true; }, -1},
    };
    const QString name = newFile;
    const QString old = oldFile;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        newFile = name;
        oldFile = old;
        choices = {};
        step = {};
        one.begin();
        int error = 0;
        try {
            error = import(newFile) == ImportEnd::Imported ? -1 : 0;
        } catch (const AutomationError& raised) {
            error = raised.number();
        }
        disk.reset();
        EXPECT_EQ(error, one.error);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).join(u' ').toStdString(), "old.mdb");
    }
    // Nor in a database that holds notes.
    TestStore store;
    choices = {};
    step = [](int percent) { return percent < 90; };
    EXPECT_EQ(merge(store), ImportEnd::Stopped);
    choices.isDryRun = true;
    step = {};
    EXPECT_EQ(merge(store), ImportEnd::Imported);
    EXPECT_EQ(report.tables[0].written, 12);
    EXPECT_EQ(column(*store.database(), schema::kTblNotes, kSubject).toStdString(), "");
}

} // namespace
