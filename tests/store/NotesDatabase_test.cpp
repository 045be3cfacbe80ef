#include "platform/dao/Connection.h"
#include "platform/dao/OnlineBackup.h"
#include "store/DailyCopy.h"
#include "store/DatabaseCheck.h"
#include "store/NotesTextIndex.h"
#include "store/Salvage.h"
#include "tests/store/Processes.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/Raised.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace yrw::test {
namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// The number of the error that opening raises; 0 for none. Its words must name the file.
int openingError(const QString& path) {
    ManualClock clock(QDateTime(QDate(2026, 3, 10), QTime(9, 0)));
    FileSystem files;
    HostDataHelper helper;
    const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
    const AutomationError error = raisedBy([&] { openNotesDatabase(helper, workspace, path); });
    if (error.number() != 0) {
        EXPECT_TRUE(error.description().contains(QFileInfo(path).fileName()))
            << qPrintable(error.description());
        EXPECT_FALSE(error.description().contains(u'\n') || error.description().contains(u'%'));
        EXPECT_FALSE(helper.hasDatabase());
    }
    return error.number();
}

class NotesDatabaseTest : public NotesFixture {
protected:
    void SetUp() override { store.closeDatabase(); }

    /// Changes the closed notes database with a script.
    void change(const QString& script, int schemaVersion = schema::kVersion) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace(store.engine());
        const Ref<dao::Database> database = workspace->OpenDatabase(store.notesPath());
        if (!script.isEmpty()) {
            database->RunScript(script);
        }
        database->setSchemaVersion(schemaVersion);
        workspace->Close();
    }
};

TEST_F(NotesDatabaseTest, RefusesWhatIsNone) {
    QFile good(store.notesPath());
    ASSERT_TRUE(good.open(QIODevice::ReadOnly));
    write(store.folder() + "/damaged.mdb",
          good.readAll().replace(100, 3000, QByteArray(3000, '\x17')));
    write(store.folder() + "/zero.mdb", {});
    write(store.folder() + "/random.mdb", QByteArray(5000, '\x7f'));
    QDir(store.folder()).mkdir("folder.mdb");
    const std::pair<const char*, int> cases[] = {
        {"missing.mdb", kErrorCannotOpenDatabase},
        {"folder.mdb", kErrorCannotOpenDatabase},
        {"zero.mdb", kErrorNotADatabase},
        {"random.mdb", kErrorNotADatabase},
        {"damaged.mdb", kErrorNotADatabase},
        {"Host.mdb", kErrorNotADatabase},
        {"Notes.mdb", 0},
    };
    for (const auto& [name, error] : cases) {
        EXPECT_EQ(openingError(store.folder() + u'/' + name), error) << name;
    }
}

TEST_F(NotesDatabaseTest, AFilePutInPlaceIsOpenedWithoutWaitingForTheDisk) {
    EXPECT_EQ(openingError(store.notesPath()), 0);
    QFile file(store.notesPath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    const QString copy = store.notesPath() + QStringLiteral(".copy");
    write(copy, bytes);
    ASSERT_EQ(::rename(qPrintable(copy), qPrintable(store.notesPath())), 0);
    EXPECT_EQ(openingError(store.notesPath()), 0);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytes) << "what writes also waits until it is written";
}

/// True when another process meets a lock of this one on a file.
bool isLockedForOthers(const QString& path) {
    return inProcesses(1, [&] {
               struct flock lock {};
               lock.l_type = F_WRLCK;
               const int file = ::open(qPrintable(path), O_RDWR);
               return ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 1 : 0;
           })[0] == 1;
}

// Closing any descriptor of the file gives up every lock that the process has on it.
TEST_F(NotesDatabaseTest, NothingThatLooksAtTheFileGivesUpTheLocksOnIt) {
    store.openNotes();
    store.addNote(QStringLiteral("a"));
    const Ref<dao::Database> database = store.database();
    const QString path = store.notesPath();
    const Ref<dao::Workspace> workspace = dao::createWorkspace(store.engine());
    const QString folder = store.folder();
    const struct {
        const char* name;
        std::function<void()> action;
    } actions[] = {
        {"open", [&] { workspace->OpenDatabase(path)->Close(); }},
        {"open as a reader", [&] { workspace->OpenDatabase(path, {true})->Close(); }},
        {"copy", [&] { database->CopyTo(folder + QStringLiteral("/copy")); }},
        {"back up",
         [&] {
             database->beginBackup(folder + QStringLiteral("/copy"), dao::ExistingCopy::Replace)
                 ->finish();
         }},
        {"daily copy",
         [&] {
             DailyCopy copy(database, QDate(2026, 3, 10));
             while (copy.step(1000)) {
             }
         }},
        {"check", [&] { static_cast<void>(findProblems(workspace, database, {})); }},
        {"is damaged", [&] { EXPECT_TRUE(isDamagedNotesDatabase(*workspace, path)); }},
        {"salvage", [&] { static_cast<void>(salvageNotes(*workspace, path)); }},
        {"make", [&] { createNotesDatabase(FileSystem(), shippedTemplateFolder(), folder); }},
        {"is replaced", [&] { EXPECT_FALSE(database->isReplaced()); }},
    };
    for (const bool isWriting : {false, true}) {
        const auto transaction =
            isWriting ? std::make_unique<dao::Transaction>(*database) : nullptr;
        ASSERT_TRUE(isLockedForOthers(path));
        for (const auto& [name, action] : actions) {
            if (isWriting && qstrcmp(name, "copy") == 0) {
                QFile::remove(folder + QStringLiteral("/copy"));
            }
            action();
            EXPECT_TRUE(isLockedForOthers(path)) << name;
            EXPECT_TRUE(isLockedForOthers(path + QStringLiteral("-shm"))) << name;
        }
    }
}

TEST_F(NotesDatabaseTest, RefusesASchemaThatItDoesNotKnowAndLeavesNoCopy) {
    for (const int version : {schema::kVersion + 1, -1, std::numeric_limits<int>::min()}) {
        change({}, version);
        EXPECT_EQ(openingError(store.notesPath()), kErrorNewerSchema) << version;
    }
    EXPECT_TRUE(QDir(store.folder()).entryList({QStringLiteral("*.schema*")}).isEmpty());
}

TEST_F(NotesDatabaseTest, OfEightProgramsThatUpgradeAtOnceAllOpenAndOneDoesIt) {
    const QByteArray path = QFile::encodeName(store.notesPath());
    for (int round = 0; round < 4; ++round) {
        change({}, 1);
        ASSERT_EQ(::chmod(path.constData(), 0640), 0);
        // What is in the way of the copy's name stays as it is, and is not followed.
        const QString decoy = store.notesPath() + QStringLiteral(".schema1");
        QFile::link(QStringLiteral("elsewhere"), decoy);
        EXPECT_EQ(inProcesses(8, [&] { return openingError(store.notesPath()) == 0 ? 0 : 1; }),
                  std::vector<int>(8));
        store.openNotes();
        EXPECT_EQ(store.database()->SchemaVersion(), schema::kVersion);
        store.closeDatabase();
        const QStringList copies =
            QDir(store.folder()).entryList({QStringLiteral("*.schema*")}, QDir::AllEntries);
        EXPECT_EQ(copies.size(), 1 + round) << qPrintable(copies.join(u' '));
        EXPECT_TRUE(QFileInfo(decoy).isSymLink());
        EXPECT_FALSE(QFile::exists(store.folder() + QStringLiteral("/elsewhere")));
    }
    struct stat status {};
    ASSERT_EQ(::stat(QByteArray(path + ".schema1-2").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(NotesDatabaseTest, UpgradesAnOlderOneToTheIndexOfAFreshOneAfterACopyBesideIt) {
    const auto parts = [this] {
        sqlite3* file = nullptr;
        EXPECT_EQ(sqlite3_open(qPrintable(store.notesPath()), &file), SQLITE_OK);
        QStringList found;
        const auto collect = [](void* into, int, char** texts, char**) {
            static_cast<QStringList*>(into)->append(QString::fromUtf8(texts[0]).simplified());
            return 0;
        };
        sqlite3_exec(file,
                     "SELECT sql FROM sqlite_schema WHERE name LIKE 'tblNotesT%' ORDER BY name",
                     collect, &found, nullptr);
        sqlite3_close(file);
        return found;
    };
    const QStringList fresh = parts();
    EXPECT_EQ(fresh.size(), 10);
    store.openNotes();
    store.addNote(QStringLiteral("kept"));
    store.closeDatabase();
    change(QStringLiteral("DROP TABLE tblNotesText; DROP TABLE tblNotesToIndex;"
                          "DROP TRIGGER tblNotesTextAdded; DROP TRIGGER tblNotesTextChanged;"
                          "DROP TRIGGER tblNotesTextDeleted;"
                          "DROP VIEW qryNotes; DROP TABLE tblUserNames;"
                          "ALTER TABLE tblNotes DROP COLUMN ChangeUserCode;"
                          "ALTER TABLE tblLinkedColumnDefs DROP COLUMN Columns;"
                          "CREATE VIEW qryNotes AS SELECT *, RecordID AS NoteID FROM tblNotes"),
           0);
    store.openNotes();
    EXPECT_EQ(store.database()->SchemaVersion(), schema::kVersion);
    EXPECT_TRUE(
        store.database()->hasField(schema::kTblLinkedColumnDefs, QStringLiteral("Columns")));
    const Ref<IRecord> note = store.application().Notes()->Item(QVariant(1));
    EXPECT_EQ(note->value(QStringLiteral("Subject")), QStringLiteral("kept"));
    EXPECT_EQ(note->value(QStringLiteral("UseName")), QStringLiteral("Anna Ash"));
    EXPECT_TRUE(QFile::exists(store.notesPath() + QStringLiteral(".schema0")));
    const auto index = notesTextIndex(store.database());
    const auto search = index->search({QStringLiteral("kept")}, {1});
    EXPECT_EQ(search->next(1000), std::vector<qint64>{1});
    EXPECT_EQ(parts(), fresh);
}

TEST_F(NotesDatabaseTest, AFreshOneIsNotMixedWithLeftOvers) {
    store.openNotes();
    store.addNote(QStringLiteral("old"));
    store.closeDatabase();
    QFile::remove(store.notesPath());
    for (const char* suffix : {"-wal", "-shm", "-journal"}) {
        write(store.notesPath() + QLatin1String(suffix), "left over");
    }
    createNotesDatabase(store.files(), shippedTemplateFolder(), store.folder());
    store.openNotes();
    EXPECT_TRUE(store.application().Notes()->NewEnum().empty());
    EXPECT_TRUE(QFile::exists(store.notesPath() + QStringLiteral("-wal.old")));
    EXPECT_TRUE(QFile::exists(store.folder() + QStringLiteral("/Support/Notes/Menus.tb")));
    // One that is there is somebody's: neither it nor what lies beside it is touched.
    store.addNote(QStringLiteral("theirs"));
    EXPECT_FALSE(createNotesDatabase(store.files(), shippedTemplateFolder(), store.folder()));
    EXPECT_TRUE(QFile::exists(store.notesPath() + QStringLiteral("-wal")));
    EXPECT_FALSE(QFile::exists(store.notesPath() + QStringLiteral("-wal.old2")));
    EXPECT_EQ(store.application().Notes()->NewEnum().size(), 1U);
}

TEST_F(NotesDatabaseTest, AMissingTemplateIsNamedAndTouchesNothing) {
    const QString nowhere = store.folder() + QStringLiteral("/nowhere");
    write(store.notesPath() + QStringLiteral("-journal"), "mine");
    EXPECT_TRUE(raisedBy([&] { createNotesDatabase(store.files(), nowhere, store.folder()); })
                    .description()
                    .contains(nowhere));
    EXPECT_TRUE(QFile::exists(store.notesPath() + QStringLiteral("-journal")));
}

TEST_F(NotesDatabaseTest, UserNamesFollowTheHostAndOutliveTheUser) {
    store.openNotes();
    store.addNote(QStringLiteral("a"));
    const qint64 before = store.database()->connection().dataVersion();
    refreshUserNames(*store.database(), userNamesOf(store.host().Users()));
    EXPECT_EQ(store.database()->connection().dataVersion(), before);
    const auto nameNow = [&] {
        return store.application().Notes()->Item(QVariant(1))->value(QStringLiteral("UseName"));
    };
    refreshUserNames(*store.database(),
                     {{1, QStringLiteral("ANNA"), QStringLiteral("Anna Aspen")}});
    EXPECT_EQ(nameNow(), QStringLiteral("Anna Aspen"));
    refreshUserNames(*store.database(), {});
    EXPECT_EQ(nameNow(), QStringLiteral("Anna Aspen"));
    store.database()->DeleteRows(schema::kTblUserNames, QStringLiteral("UserID"), 1);
    EXPECT_EQ(nameNow(), QStringLiteral("ANNA")) << "an unknown author shows by code";
}

} // namespace
} // namespace yrw::test
