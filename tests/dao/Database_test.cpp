#include "platform/dao/Connection.h"
#include "tests/dao/DaoFixture.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

class DatabaseTest : public DaoTest {
protected:
    qint64 noteCount() {
        return database->OpenRecordset(u"tblNotes"_qs, RecordsetType::Table)->RecordCount();
    }
    static Ref<Recordset> editing(Database& in, qint64 id) {
        auto rows = in.OpenRecordset(u"SELECT * FROM qryNotes WHERE RecordID=%1"_qs.arg(id));
        rows->Edit();
        return rows;
    }
    /// Asks the file with the engine alone.
    [[nodiscard]] QString journalMode() const {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.read(20).back() == 2 ? u"wal"_qs : u"rollback"_qs;
    }
};

TEST_F(DatabaseTest, ATransactionIsAllOrNothingAtEveryDepth) {
    {
        const Transaction dropped(*database);
        addNote(u"never"_qs);
    }
    EXPECT_EQ(noteCount(), 0);
    Transaction outer(*database);
    addNote(u"kept"_qs);
    {
        const Transaction inner(*database);
        addNote(u"dropped"_qs);
    }
    {
        Transaction inner(*database);
        addNote(u"kept too"_qs);
        inner.commit();
    }
    EXPECT_EQ(another()->OpenRecordset(u"tblNotes"_qs)->RecordCount(), 0);
    outer.commit();
    EXPECT_EQ(another()->OpenRecordset(u"tblNotes"_qs)->RecordCount(), 2);
}

TEST_F(DatabaseTest, AScriptThatFailsLeavesNothing) {
    EXPECT_EQ(
        errorOf([&] { database->RunScript(u"CREATE TABLE a (x); CREATE TABLE tblNotes (x);"_qs); }),
        kErrorDatabaseEngine);
    EXPECT_FALSE(database->hasTable(u"a"_qs));
    EXPECT_EQ(errorOf([&] { static_cast<void>(workspace->CreateDatabase(path())); }),
              kErrorCannotOpenDatabase);
    EXPECT_TRUE(database->hasField(u"TBLNOTES"_qs, u"subject"_qs));
}

/// A clock whose every look takes a second, so that deadlines come at once.
class HurriedClock final : public Clock {
public:
    [[nodiscard]] QDateTime now() const override { return QDateTime(QDate(2026, 6, 1), QTime()); }
    [[nodiscard]] qint64 monotonicMs() const override { return m_now += 1000; }

private:
    mutable qint64 m_now = 0;
};

TEST_F(DatabaseTest, ALockedDatabaseSaysSoAndGoesOnLater) {
    HurriedClock hurried;
    const auto impatient = createWorkspace({hurried, files})->OpenDatabase(path());
    const auto rows = impatient->OpenRecordset(u"tblNotes"_qs);
    rows->AddNew();
    rows->setValue(u"Subject", u"waited"_qs);
    {
        const Transaction blocking(*database);
        EXPECT_EQ(errorOf([&] { rows->Update(); }), kErrorLocked);
        EXPECT_TRUE(rows->EditInProgress());
    }
    rows->Update();
    EXPECT_EQ(noteCount(), 1);
}

TEST_F(DatabaseTest, ClosingTheWorkspaceClosesWhatItOpened) {
    const auto rows = database->OpenRecordset(u"tblNotes"_qs);
    const auto host = createWorkspace({clock, files});
    const auto hosts = host->OpenDatabase(path());
    workspace->Close();
    workspace->Close();
    EXPECT_FALSE(database->isOpen());
    EXPECT_FALSE(rows->isOpen());
    EXPECT_TRUE(hosts->isOpen());
    EXPECT_EQ(errorOf([&] { static_cast<void>(database->SchemaVersion()); }), kErrorObjectClosed);
    EXPECT_EQ(errorOf([&] { static_cast<void>(workspace->OpenDatabase(path())); }),
              kErrorObjectClosed);
}

/// Runs something in a running event loop, and returns when control is back in that loop.
void inEventLoop(const std::function<void()>& first, const std::function<void()>& nextTurn) {
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        first();
        QTimer::singleShot(0, &loop, [&] {
            nextTurn();
            loop.quit();
        });
    });
    loop.exec();
}

TEST_F(DatabaseTest, ReadsOfOneTurnSeeOneStateAndTheNextTurnSeesTheNext) {
    const qint64 id = addNote(u"before"_qs);
    const auto seek = database->OpenRecordset(u"tblNotes"_qs, RecordsetType::Table);
    const auto stream = database->OpenRecordset(u"tblNotes"_qs, RecordsetType::ForwardOnly);
    const auto other = another();
    inEventLoop(
        [&] {
            seek->Seek(u"=", {id});
            EXPECT_EQ(seek->value(u"Status").toInt(), 1);
            const auto theirs = editing(*other, id);
            theirs->setValue(u"Subject", u"after"_qs);
            theirs->Update();
            EXPECT_EQ(seek->value(u"Subject").toString(), u"before");
        },
        [&] {
            seek->Seek(u"=", {id});
            EXPECT_EQ(seek->value(u"Subject").toString(), u"after");
            EXPECT_EQ(stream->value(u"Status").toInt(), 1) << "a stream reads on";
        });
    seek->Seek(u"=", {id});
    const qint64 version = database->connection().dataVersion();
    other->DeleteRows(u"tblNotes"_qs, u"RecordID"_qs, id);
    EXPECT_NE(database->connection().dataVersion(), version);
    seek->Seek(u"=", {id});
    EXPECT_TRUE(seek->NoMatch()) << "outside a loop every read stands alone";
}

class JournalTest : public DatabaseTest {
protected:
    Ref<Database> openFrom(const MountTest& mounts) {
        return createWorkspace({hurried, files, &mounts})->OpenDatabase(path());
    }
    HurriedClock hurried;
    FixedMount local{false};
    FixedMount network{true};
};

TEST_F(JournalTest, ANetworkMountTurnsTheFileForEverybody) {
    database->Close();
    openFrom(local)->Close();
    EXPECT_EQ(journalMode(), u"wal");
    openFrom(network)->Close();
    EXPECT_EQ(journalMode(), u"rollback");
    openFrom(local)->Close();
    EXPECT_EQ(journalMode(), u"rollback") << "a local host honours the mark";
    const auto one = openFrom(local);
    const auto two = openFrom(network);
    add(*one, u"tblNotes"_qs, {{u"Subject"_qs, u"a"_qs}});
    add(*two, u"tblNotes"_qs, {{u"Subject"_qs, u"b"_qs}});
    EXPECT_EQ(one->OpenRecordset(u"tblNotes"_qs)->RecordCount(), 2);
}

TEST_F(JournalTest, AFileThatCannotBeTurnedIsRefused) {
    database->Close();
    const auto holder = openFrom(local);
    EXPECT_EQ(errorOf([&] { static_cast<void>(openFrom(network)); }), kErrorLocked);
    add(*holder, u"tblNotes"_qs, {{u"Subject"_qs, u"goes on"_qs}});
}

/// True when this process has the file mapped.
bool isMapped(const QString& file) {
    QFile maps(u"/proc/self/maps"_qs);
    return maps.open(QIODevice::ReadOnly) &&
           QString::fromUtf8(maps.readAll()).contains(u' ' + file + u'\n');
}

TEST_F(JournalTest, OnlyALongReadOfALocalFileMapsIt) {
    Transaction transaction(*database);
    for (int i = 0; i < 900; ++i) {
        addNote(QString(255, u's'));
    }
    transaction.commit();
    database->Close();
    for (const auto& [mounts, expected] : {std::pair{&local, true}, {&network, false}}) {
        const auto from = openFrom(*mounts);
        Ref<Recordset> rows;
        inEventLoop(
            [&] {
                rows = from->OpenRecordset(u"qryNotes"_qs, RecordsetType::ForwardOnly);
                for (int i = 0; i < 800; ++i) {
                    rows->MoveNext();
                }
                EXPECT_EQ(isMapped(path()), expected);
            },
            [&] {
                EXPECT_FALSE(isMapped(path())) << "the turn is over";
                EXPECT_EQ(column(*rows, u"Subject").size(), 100);
            });
    }
}

/// Takes the right to write to a folder away, also from root.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString& folder) : m_folder(QFile::encodeName(folder)) {
        EXPECT_EQ(::chmod(m_folder.constData(), 0555), 0);
        m_becameNobody = ::geteuid() == 0 && ::seteuid(65534) == 0;
    }
    ~ReadOnlyFolder() {
        EXPECT_TRUE(!m_becameNobody || ::seteuid(0) == 0);
        EXPECT_EQ(::chmod(m_folder.constData(), 0755), 0);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    QByteArray m_folder;
    bool m_becameNobody = false;
};

TEST_F(JournalTest, AFileInAReadOnlyFolderOpensReadOnly) {
    addNote(u"to read"_qs);
    database->Close();
    ASSERT_EQ(journalMode(), u"wal");
    const ReadOnlyFolder guard(folder.path());
    const auto rows = openFrom(local)->OpenRecordset(u"qryNotes"_qs);
    EXPECT_EQ(rows->value(u"Subject").toString(), u"to read");
    EXPECT_FALSE(rows->Updatable());
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), kErrorReadOnly);
    EXPECT_EQ(errorOf([&] { openFrom(local)->ExecuteQuery(u"delNoteByID"_qs, {}); }),
              kErrorReadOnly);
}

/// What somebody put into the file, and what the reader does then.
struct HostileText {
    const char* what;
    QString script;
    std::function<void(Database&)> use;
    QString words; ///< in the error; empty where there is none
};

QString storedAs(const QString& name, const QString& kind, QString sql) {
    return u"INSERT OR REPLACE INTO tblQueries (Name, Kind, SQL) VALUES ('%1', '%2', '%3')"_qs.arg(
        name, kind, sql.replace(u'\'', u"''"_qs));
}

void readAll(Database& from, const QString& source) {
    const auto rows = from.OpenRecordset(source, RecordsetType::ForwardOnly);
    while (!rows->AtEof()) {
        rows->MoveNext();
    }
}

void removeNote(Database& in) {
    in.ExecuteQuery(u"delNoteByID"_qs, {});
}

void addOne(Database& to) {
    const auto rows = to.OpenRecordset(u"tblNotes"_qs, RecordsetType::Table);
    rows->AddNew();
    rows->setValue(u"Subject", u"x"_qs);
    rows->Update();
}

std::vector<HostileText> hostileTexts(const QString& other) {
    const QString endless = u"SELECT count(*) AS n FROM %1 AS a, %1 AS b, %1 AS c, %1 AS d, %1 AS e"
                            " WHERE a.RecordID + b.RecordID + c.RecordID = -1"_qs;
    const QString many = u"(SELECT RecordID FROM tblNotes UNION ALL SELECT RecordID FROM many)"_qs;
    const auto open = [](const QString& source) {
        return [source](Database& in) { readAll(in, source); };
    };
    return {
        {"an action attaches a file",
         storedAs(u"delNoteByID"_qs, u"action"_qs, u"ATTACH '%1' AS p"_qs.arg(other)), removeNote,
         u"refused"_qs},
        {"an action turns a protection off",
         storedAs(u"delNoteByID"_qs, u"action"_qs, u"PRAGMA writable_schema = 1"_qs), removeNote,
         u"refused"_qs},
        {"an action drops a table",
         storedAs(u"delNoteByID"_qs, u"action"_qs, u"DROP TABLE tblReminders"_qs), removeNote,
         u"refused"_qs},
        {"a query loads a library",
         storedAs(u"q"_qs, u"select"_qs, u"SELECT load_extension('x.so')"_qs), open(u"q"_qs),
         u"refused"_qs},
        {"a query takes all memory",
         storedAs(u"q"_qs, u"select"_qs, u"SELECT randomblob(900000000)"_qs), open(u"q"_qs),
         u"refused"_qs},
        {"a query counts for ever",
         storedAs(u"q"_qs, u"select"_qs,
                  u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                  "SELECT max(i) FROM n"_qs),
         open(u"q"_qs), u"refused"_qs},
        {"a query joins for ever", storedAs(u"q"_qs, u"select"_qs, endless.arg(many)),
         open(u"q"_qs), u"stopped"_qs},
        {"a view counts for ever",
         u"DROP VIEW qryNotes; CREATE VIEW qryNotes AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
         "SELECT i + 1 FROM n) SELECT i AS RecordID FROM n"_qs,
         open(u"SELECT Count(*) FROM qryNotes"_qs), u"refused"_qs},
        {"a view joins for ever, and so does a trigger",
         u"CREATE TRIGGER t AFTER INSERT ON tblNotes BEGIN UPDATE tblSettings SET "
         "HighlightRowColour = (%1); END; DROP VIEW qryNotes; CREATE VIEW qryNotes AS %1"_qs.arg(
             endless.arg(u"many"_qs)),
         [](Database& in) {
             EXPECT_EQ(errorOf([&] { readAll(in, u"qryNotes"_qs); }), kErrorDatabaseEngine);
             addOne(in);
         },
         u"stopped"_qs},
        {"a query is like those that ship",
         storedAs(
             u"q"_qs, u"select"_qs,
             u"SELECT upper(Subject) FROM tblNotes WHERE Date <= datetime(Now(), '1 minutes')"_qs),
         open(u"q"_qs),
         {}},
    };
}

TEST_F(DatabaseTest, TextInTheFileReachesNoOtherFileAndComesToAnEnd) {
    addNote(u"a"_qs);
    const QString other = path(u"private.mdb"_qs);
    workspace->CreateDatabase(other)->RunScript(u"CREATE TABLE secret (x)"_qs);
    database->RunScript(u"CREATE TABLE many AS WITH RECURSIVE n(RecordID) AS (SELECT 1 UNION ALL "
                        "SELECT RecordID + 1 FROM n WHERE RecordID < 3000) SELECT * FROM n"_qs);
    database->Close();
    for (const HostileText& hostile : hostileTexts(other)) {
        const QString copy = path(u"case.mdb"_qs);
        QFile::remove(copy);
        ASSERT_TRUE(QFile::copy(path(), copy));
        const auto shared = workspace->OpenDatabase(copy);
        shared->RunScript(hostile.script);
        QString words;
        QElapsedTimer timer;
        timer.start();
        try {
            hostile.use(*shared);
        } catch (const AutomationError& error) {
            words = error.description();
        }
        EXPECT_LT(timer.elapsed(), 60'000) << hostile.what;
        EXPECT_EQ(words.isEmpty(), hostile.words.isEmpty())
            << hostile.what << ": " << words.toStdString();
        EXPECT_TRUE(words.contains(hostile.words)) << hostile.what << words.toStdString();
        EXPECT_TRUE(words.isEmpty() || words.contains(copy)) << hostile.what;
        EXPECT_TRUE(shared->hasTable(u"tblReminders"_qs)) << hostile.what;
        EXPECT_TRUE(shared->CheckIntegrity().isEmpty()) << "the connection goes on";
        shared->Close();
    }
}

TEST_F(DatabaseTest, TheIntegrityCheckFindsDamage) {
    for (int i = 0; i < 300; ++i) {
        addNote(QString(200, u'x'));
    }
    EXPECT_TRUE(database->CheckIntegrity().isEmpty());
    database->Close();
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(file.size() - 4096);
    file.write(QByteArray(2000, '\x33'));
    file.close();
    EXPECT_FALSE(workspace->OpenDatabase(path())->CheckIntegrity().isEmpty());
}

} // namespace

} // namespace yrw::dao
