#include "tests/cli/CommandFixture.h"

namespace yrw::test {
namespace {

using BadDatabasesTest = CommandFixture;

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

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
        for (const char* const words : {"list", "check", "add --subject b"}) {
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
    QBuffer in;
    QBuffer out;
    QBuffer err;
    in.open(QIODevice::ReadOnly);
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    const auto runNow = [&](const QStringList& words) {
        const QStringList head{QStringLiteral("yrwnotes"), QStringLiteral("--data"), folder.path()};
        return runCommand(head + words, {in, out, err}, {{Clock::instance(), files}, settings});
    };
    EXPECT_EQ(runNow({QStringLiteral("list")}), kExitDone);
    EXPECT_EQ(runNow({QStringLiteral("add"), QStringLiteral("--subject"), QStringLiteral("a")}),
              kExitFailed);
    EXPECT_EQ(err.data().count('\n'), 1);
    EXPECT_TRUE(err.data().contains(notesPath().toUtf8()));
}

TEST_F(BadDatabasesTest, CheckFindsAndRepairs) {
    run("add --subject fine --text body --remind me --at 2026-03-11");
    change("INSERT INTO tblNotes (Subject, Status) VALUES ('status', 7);"
           "INSERT INTO tblNotes (Subject, ReminderType) VALUES ('kind', 9);"
           "INSERT INTO tblNotes (Subject, RTFNote) VALUES ('broken', '{\\rtf1 half {\\b a');"
           "INSERT INTO tblNotes (Subject, RTFNote) VALUES ('none', 'just words');"
           "INSERT INTO tblReminders (NoteID) VALUES (99);"
           "INSERT INTO tblReminders (NoteID, Status) VALUES (1, 8)");
    const Outcome found = run("check --json");
    EXPECT_EQ(found.status, kExitFailed);
    EXPECT_EQ(found.column(QStringLiteral("RecordID")).join(u','), QStringLiteral("2,3,4,5,2,3"));
    EXPECT_EQ(run("check").out.count(u'\n'), 6);

    const Outcome fixed = run("check --fix");
    EXPECT_EQ(fixed.status, kExitDone) << qPrintable(fixed.err);
    EXPECT_TRUE(QFile::exists(notesPath() + QStringLiteral(".before-fix")));
    EXPECT_EQ(run("check").status, kExitDone);
    EXPECT_EQ(run("show 4 --rtf").out.count(QStringLiteral("half")), 1) << "text is kept";
    EXPECT_EQ(run("show 1 --text").out, QStringLiteral("body\n"));
    EXPECT_EQ(run("reminders --json").json().size(), 2);
    EXPECT_EQ(run("list --status active --json").json().size(), 5);
}

} // namespace
} // namespace yrw::test
