#include "store/DailyCopy.h"

#include "platform/dao/Schema.h"
#include "tests/store/Processes.h"
#include "tests/support/NotesFixture.h"

#include <QDir>

#include <algorithm>

#include <sys/stat.h>

namespace yrw::test {
namespace {

class DailyCopyTest : public NotesFixture {
protected:
    DailyCopyTest() { addNotes(300); }

    void addNotes(int count) {
        dao::Transaction transaction(*store.database());
        for (int i = 0; i < count; ++i) {
            store.addNote(QString(200, u'x'));
        }
        transaction.commit();
    }
    /// Goes on to the end; the copy that was made.
    static QString finish(DailyCopy& copy) {
        while (copy.step(1)) {
        }
        return copy.path();
    }
    QString makeOn(const QDate& day) {
        DailyCopy copy(store.database(), day);
        return finish(copy);
    }
    [[nodiscard]] QString folder() const { return store.folder() + "/Backups/Notes"; }
    [[nodiscard]] QStringList copies() const {
        return QDir(folder()).entryList({"Notes*"}, QDir::Files | QDir::Hidden);
    }
    qint64 notesIn(const QString& path) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace(store.engine());
        const Ref<dao::Database> database = workspace->OpenDatabase(path);
        EXPECT_TRUE(database->CheckIntegrity().isEmpty());
        return database->OpenRecordset("tblNotes")->RecordCount();
    }

    const QDate today{2026, 3, 10};
};

TEST_F(DailyCopyTest, OneADayOfWhichSevenAreKept) {
    QDir().mkpath(folder());
    QFile foreign(folder() + "/Notes from Ben.mdb");
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    for (int day = 0; day < 10; ++day) {
        const QString path = makeOn(today.addDays(day));
        EXPECT_EQ(path, folder() + "/Notes " + today.addDays(day).toString(Qt::ISODate) + ".mdb");
        EXPECT_EQ(makeOn(today.addDays(day)), QString()) << "once a day";
        addNotes(1);
    }
    QStringList expected{"Notes from Ben.mdb"};
    for (int day = 3; day < 10; ++day) {
        expected += "Notes " + today.addDays(day).toString(Qt::ISODate) + ".mdb";
        EXPECT_EQ(notesIn(folder() + u'/' + expected.last()), 300 + day);
    }
    QStringList found = copies();
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
}

TEST_F(DailyCopyTest, ShowsOneStateWhileOthersWrite) {
    ASSERT_EQ(::chmod(qPrintable(store.notesPath()), 0640), 0);
    TestStore other(store.folder());
    DailyCopy copy(store.database(), today);
    int steps = 0;
    for (; copy.step(0); ++steps) {
        other.addNote("meanwhile");
        store.addNote("meanwhile");
    }
    EXPECT_GE(steps, 3);
    const qint64 notes = notesIn(copy.path());
    EXPECT_GE(notes, 300);
    EXPECT_LE(notes, 302) << "the state of the first step";
    struct stat made {};
    ASSERT_EQ(::stat(qPrintable(copy.path()), &made), 0);
    EXPECT_EQ(made.st_mode & 0777U, 0640U);
}

TEST_F(DailyCopyTest, OneOfSeveralProgramsMakesIt) {
    const QString path = store.notesPath();
    store.closeDatabase();
    const std::vector<int> made = inProcesses(4, [&] {
        const Ref<dao::Workspace> workspace = dao::createWorkspace(store.engine());
        DailyCopy copy(workspace->OpenDatabase(path), today);
        return finish(copy).isEmpty() ? 0 : 1;
    });
    EXPECT_EQ(std::count(made.begin(), made.end(), 1), 1);
    EXPECT_EQ(std::count(made.begin(), made.end(), 0), 3);
    EXPECT_EQ(copies(), QStringList("Notes 2026-03-10.mdb"));
    EXPECT_EQ(notesIn(folder() + "/Notes 2026-03-10.mdb"), 300);
}

TEST_F(DailyCopyTest, WhatAKilledProgramLeftIsReplaced) {
    const QString path = store.notesPath();
    store.closeDatabase();
    inProcesses(1, [&] {
        const Ref<dao::Workspace> workspace = dao::createWorkspace(store.engine());
        DailyCopy copy(workspace->OpenDatabase(path), today);
        copy.step(0);
        copy.step(0);
        ::_exit(0); // as a kill does: nothing is cleaned up
        return 0;
    });
    ASSERT_EQ(copies().size(), 1);
    ASSERT_FALSE(copies().first().endsWith(".mdb"));
    store.openNotes();
    EXPECT_FALSE(makeOn(today).isEmpty());
    EXPECT_EQ(copies(), QStringList("Notes 2026-03-10.mdb"));
}

TEST_F(DailyCopyTest, NeverFollowsALink) {
    QTemporaryDir elsewhere;
    ASSERT_TRUE(QFile::link(elsewhere.path(), store.folder() + "/Backups"));
    EXPECT_THROW(makeOn(today), AutomationError);
    EXPECT_TRUE(QDir(elsewhere.path()).isEmpty());
}

TEST_F(DailyCopyTest, DroppedHalfWayItLeavesNothing) {
    {
        DailyCopy copy(store.database(), today);
        copy.step(0);
        copy.step(0);
    }
    EXPECT_TRUE(copies().isEmpty());
    EXPECT_FALSE(makeOn(today).isEmpty()) << "and hands the day on";
}

} // namespace
} // namespace yrw::test
