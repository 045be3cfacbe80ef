#include "tests/cli/CommandFixture.h"
#include "tests/support/FullDisk.h"

namespace yrw::test {
namespace {

class BadDatabasesTest : public CommandFixture {
protected:
    QString m_script;
};

TEST_F(BadDatabasesTest, EachIsStatusThreeAndOneLineThatNamesTheFile) {
    run("add --subject a");
    const QByteArray good = read(notesPath());
    QByteArray overwritten = good;
    for (qsizetype page = 8192; page < overwritten.size(); page += 4096) {
        overwritten.replace(page, 40, QByteArray(40, '\xff'));
    }
    const struct {
        const char* name;
        QByteArray bytes;
    } cases[] = {
        {"zero bytes", {}},
        {"text", "hello world"},
        {"random bytes", QByteArray(9000, '\xa5')},
        {"cut off", good.left(good.size() / 3)},
        {"overwritten pages", overwritten},
        {"another database", read(folder.filePath(QStringLiteral("Desk.mdb")))},
    };
    for (const auto& c : cases) {
        write(notesPath(), c.bytes);
        for (const char* const words : {"list", "check", "check --fix", "add --subject b"}) {
            const Outcome outcome = run(words);
            EXPECT_EQ(outcome.status, kExitFailed) << c.name << ": " << words;
            EXPECT_EQ(outcome.err.count(u'\n'), 1) << c.name;
            EXPECT_TRUE(outcome.err.contains(notesPath())) << qPrintable(outcome.err);
        }
        EXPECT_EQ(read(notesPath()), c.bytes) << c.name << " was written to";
    }
    QFile::remove(notesPath());
    EXPECT_TRUE(run("list").err.contains(notesPath()));
    EXPECT_EQ(run("list").status, kExitFailed);
    EXPECT_FALSE(QFile::exists(notesPath()));
}

TEST_F(BadDatabasesTest, ABrokenHostDatabaseIsNamed) {
    const QString desk = folder.filePath(QStringLiteral("Desk.mdb"));
    write(desk, "hello world");
    const Outcome outcome = run("list");
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_TRUE(outcome.err.contains(desk)) << qPrintable(outcome.err);
}

TEST_F(BadDatabasesTest, ALockedOneCanBeReadAndIsNotWaitedForForever) {
    const Ref<dao::Workspace> other = dao::createWorkspace({Clock::instance(), files});
    const Ref<dao::Database> held = other->OpenDatabase(notesPath());
    run("list"); // the user names are there
    const dao::Transaction lock(*held);
    running = &Clock::instance();
    EXPECT_EQ(run("list").status, kExitDone);
    const Outcome added = run("add --subject a");
    EXPECT_EQ(added.status, kExitFailed);
    EXPECT_EQ(added.err.count(u'\n'), 1);
    EXPECT_TRUE(added.err.contains(notesPath()));
}

TEST_F(BadDatabasesTest, CheckFindsAndRepairs) {
    run("add --subject fine --text body --remind me --at 2026-03-11");
    ASSERT_EQ(run("check").status, kExitDone) << qPrintable(run("check").out);
    const struct {
        const char* harm;
        const char* says; ///< of the one finding
        bool isMended = true;
    } cases[] = {
        {"INSERT INTO tblNotes (Subject, Status) VALUES ('x', 7)",
         "tblNotes 2: unknown code '7' in "
         "Status"},
        {"INSERT INTO tblNotes (Subject, Status) VALUES ('x', 'abc')",
         "tblNotes 2: unknown code 'abc' in Status"},
        {"INSERT INTO tblNotes (Subject, ReminderType) VALUES ('x', 9)",
         "tblNotes 2: unknown code '9' in ReminderType"},
        {"UPDATE tblNotes SET ReminderType = 9 WHERE RecordID = 1",
         "tblNotes 1: unknown code '9' in ReminderType"},
        {"UPDATE tblNotes SET ReminderType = 'x' WHERE RecordID = 1",
         "tblNotes 1: unknown code 'x' in ReminderType"},
        {"INSERT INTO tblNotes (RTFNote) VALUES ('{\\rtf1 half {\\b a')",
         "tblNotes 2: rich text is cut off"},
        {"INSERT INTO tblNotes (RTFNote) VALUES ('just words')",
         "tblNotes 2: rich text is no rich text"},
        {"INSERT INTO tblNotes (Date) VALUES ('31/12/2020 10:00')",
         "tblNotes 2: '31/12/2020 10:00' in Date"},
        {"INSERT INTO tblNotes (Date) VALUES ('soon')", "tblNotes 2: 'soon' in Date", false},
        {"INSERT INTO tblNotes (AutomaticallyShow) VALUES ('False')",
         "tblNotes 2: 'False' in AutomaticallyShow"},
        {"INSERT INTO tblReminders (NoteID, UserID, NextDate) VALUES (1, 1, '')",
         "tblReminders 2: '' in NextDate"},
        {"INSERT INTO tblReminders (NoteID) VALUES (99)",
         "tblReminders 2: reminder of a note that is not there"},
        {"INSERT INTO tblReminders (NoteID, UserID, Status) VALUES (1, 1, 8)",
         "tblReminders 2: unknown code '8' in Status"},
        {"INSERT INTO tblReminders (NoteID, UserID) VALUES (1, 9)",
         "tblReminders 2: reminder of user 9, who is none"},
        {"INSERT INTO tblNotes (Subject) VALUES ('x'); INSERT INTO tblReminders (NoteID, UserID) "
         "VALUES (2, 1)",
         "tblReminders 2: reminder of a note that reminds nobody"},
        {"DROP VIEW qryReminders", "qryReminders: the view is missing"},
        {"DROP VIEW qryNotes; CREATE VIEW qryNotes AS SELECT *, RecordID AS NoteID, '' AS UseName "
         "FROM tblNotes WHERE Status = 1",
         "qryNotes: the view was changed"},
        {"DROP INDEX RemindersByNote", "RemindersByNote: the index is missing"},
        {"DROP INDEX OpenRemindersByUser; CREATE INDEX OpenRemindersByUser ON tblReminders "
         "(UserID)",
         "OpenRemindersByUser: the index was changed"},
        {"DELETE FROM tblQueries WHERE Name = 'delNoteByID'", "delNoteByID: the stored query is "
                                                              "missing"},
        {"UPDATE tblQueries SET SQL = 'DELETE FROM tblNotes' WHERE Name = 'delNoteByID'",
         "delNoteByID: the stored query was changed"},
        {"DROP VIEW qryNotes; ALTER TABLE tblNotes DROP COLUMN ChangeDate",
         "tblNotes: the field ChangeDate is missing"},
        {"DROP TABLE tblLinkedColumnDefs", "tblLinkedColumnDefs: the table is missing"},
        {"CREATE TRIGGER spy AFTER INSERT ON tblNotes BEGIN DELETE FROM tblReminders; END",
         "spy: a trigger on tblNotes", false},
        {"DROP TABLE tblQueries; CREATE VIEW tblQueries AS SELECT load_extension('x') AS Name",
         "tblQueries: is a view where a table belongs", false},
        {"DROP TRIGGER tblNotesTextChanged", "tblNotesText: the search index is incomplete"},
        {"DELETE FROM tblNotesToIndex; INSERT INTO tblNotesText (rowid, Folded) VALUES (77, 'x')",
         "tblNotesText: the index lacks 1 notes and has 1 that are gone"},
    };
    QFile::copy(notesPath(), notesPath() + ".whole");
    for (const auto& c : cases) {
        QFile::remove(notesPath());
        QFile::copy(notesPath() + ".whole", notesPath());
        change(c.harm);
        const Outcome found = run("check");
        EXPECT_EQ(found.status, kExitNothing) << c.harm;
        EXPECT_TRUE(found.out.contains(QLatin1String(c.says)))
            << c.harm << ": " << qPrintable(found.out);
        const Outcome fixed = run("check --fix");
        EXPECT_EQ(fixed.status, c.isMended ? kExitDone : kExitNothing) << qPrintable(fixed.out);
        EXPECT_TRUE(fixed.out.contains(c.isMended ? ", repaired" : ", not repaired"));
        EXPECT_EQ(run("check").status, c.isMended ? kExitDone : kExitNothing)
            << c.harm << ": " << qPrintable(run("check").out);
        EXPECT_EQ(run("show 1 --text").out, "body\n");
        EXPECT_EQ(run("reminders --note 1 --json").json().size() > 0, true) << c.harm;
    }
    EXPECT_TRUE(QFile::exists(notesPath() + ".before-fix"));
}

TEST_F(BadDatabasesTest, CheckKeepsWhatTheProgramWrites) {
    run("add --subject a --remind users:ANNA,BEN,CARA,DAVE,ERIN --at 2026-03-11");
    run("add --subject b --private --auto-show");
    run("add --subject c --remind me --at 2026-03-11");
    run("done 2");
    change("UPDATE tblReminders SET Status = RecordID - 1 WHERE RecordID > 2;"
           "UPDATE tblReminders SET Status = NULL WHERE RecordID = 1;"
           "INSERT INTO tblReminders (NoteID, UserID, Status) VALUES (3, 77, 4)");
    const QString before = run("export --format json").out;
    const Outcome fixed = run("check --fix");
    EXPECT_EQ(fixed.out, "tblReminders 6: unknown code '5' in Status, repaired\n");
    change("UPDATE tblReminders SET Status = 5 WHERE RecordID = 6");
    EXPECT_EQ(run("export --format json").out, before);
    change("UPDATE tblReminders SET Status = 1 WHERE RecordID = 6; PRAGMA user_version = 0");
    EXPECT_EQ(run("check").out, "No problems were found.\n") << "after an upgrade";
}

TEST_F(BadDatabasesTest, WhatCanBeReadOfADamagedFileIsSalvaged) {
    for (int note = 1; note <= 300; ++note) {
        m_script += QStringLiteral("INSERT INTO tblNotes (Subject, PlainNote, Status) VALUES "
                                   "('s%1', '%2', 1);")
                        .arg(note)
                        .arg(QString(400, u'x'));
    }
    m_script += "INSERT INTO tblNotes (RecordID, Subject, PlainNote) VALUES (900, 'end', '" +
                QString(9000, u'y') + "');";
    m_script += "ALTER TABLE tblSystem ADD COLUMN Own TEXT; UPDATE tblSystem SET Own = 'kept';"
                "INSERT INTO tblQueries (Name, Kind, SQL) VALUES ('mine', 'select', 'SELECT 1')";
    change(qPrintable(m_script));
    run("list"); // the users' names are there
    QByteArray bytes = read(notesPath());
    const qsizetype inside = bytes.indexOf("s150xxxx");
    const qsizetype overflow = bytes.lastIndexOf(QByteArray(3000, 'y'));
    const qsizetype user = bytes.indexOf("CARA");
    ASSERT_TRUE(inside > 0 && overflow > 0 && user > 0);
    bytes.replace(user / 4096 * 4096, 100, QByteArray(100, '\xff'));
    bytes.replace(inside / 4096 * 4096, 100, QByteArray(100, '\xff'));
    write(notesPath(), bytes);

    EXPECT_EQ(run("check").status, kExitNothing);
    EXPECT_TRUE(run("check").err.contains("is damaged"));
    for (const rlim_t room : {0, 20'000, 100'000}) {
        const test::FullDisk full(room);
        EXPECT_EQ(run("check --fix").status, kExitFailed) << room;
        EXPECT_EQ(QDir(folder.path()).entryList({"*salvaged*"}), QStringList()) << room;
    }
    const Outcome fixed = run("check --fix");
    EXPECT_EQ(fixed.status, kExitNothing) << "the file in its place is damaged still";
    EXPECT_TRUE(fixed.err.contains("put in its place")) << qPrintable(fixed.err);
    EXPECT_EQ(read(notesPath()), bytes);
    EXPECT_TRUE(fixed.out.contains("tblNotes: the rows 1")) << qPrintable(fixed.out + fixed.err);

    EXPECT_TRUE(fixed.out.contains("tblUserNames: rows after the 0 that")) << qPrintable(fixed.out);

    const QString salvaged = notesPath() + ".salvaged";
    ASSERT_TRUE(QFile::exists(salvaged)) << qPrintable(fixed.err);
    QFile::remove(notesPath());
    QFile::rename(salvaged, notesPath());
    EXPECT_EQ(run("check").status, kExitDone) << qPrintable(run("check").out);
    const QJsonArray notes = run("list --json").json();
    EXPECT_GT(notes.size(), 280);
    EXPECT_LT(notes.size(), 301);
    EXPECT_EQ(run("show 900 --text").out, QString(9000, u'y') + u'\n');
    const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
    const Ref<dao::Database> database = workspace->OpenDatabase(notesPath());
    EXPECT_EQ(database->OpenRecordset("tblSystem")->value(u"Own"), "kept");
    EXPECT_NO_THROW(static_cast<void>(database->OpenRecordset("mine")));
}

} // namespace
} // namespace yrw::test
