#include "platform/files/FolderLock.h"
#include "tests/dao/DaoFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

constexpr uid_t kNobody = 65534;

/// What other users and programs do to a file while it is open here.
class NeighboursTest : public DaoTest {
protected:
    static QStringList subjects(Database& from) {
        const auto rows = from.OpenRecordset(u"SELECT * FROM tblNotes ORDER BY RecordID"_qs);
        return column(*rows, u"Subject");
    }
    /// Puts another file at the path, as a sync client or somebody who restores a copy does.
    void put(const QString& file) const {
        EXPECT_EQ(::rename(qPrintable(file), qPrintable(path())), 0);
    }
    [[nodiscard]] QStringList files() const {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
};

TEST_F(NeighboursTest, AFilePutInPlaceOfTheOpenOneIsNeitherWrittenNorMixedWithItsJournal) {
    addNote(u"in both"_qs);
    const QString copy = path(u"copy.mdb"_qs);
    database->CopyTo(copy);
    addNote(u"since the copy"_qs);
    EXPECT_FALSE(database->isReplaced());
    put(copy);
    EXPECT_TRUE(database->isReplaced());
    EXPECT_EQ(errorOf([&] { addNote(u"never"_qs); }), kErrorFileReplaced);
    EXPECT_EQ(subjects(*database).size(), 2) << "what was open can still be read";
    {
        const FolderLock taking(folder.path()); // another program is just settling where it lies
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(errorOf([&] { static_cast<void>(another()); }), kErrorLocked);
        EXPECT_LT(timer.elapsed(), 2000);
    }
    EXPECT_TRUE(files().filter(u".old"_qs).isEmpty()) << "its journal is left alone";
    // Somebody else opens what is there, while we have not let go, and after we have.
    for (const bool isStillOpen : {true, false}) {
        if (!isStillOpen) {
            database->Close();
        }
        const auto other = another();
        EXPECT_TRUE(other->CheckIntegrity().isEmpty());
        EXPECT_EQ(subjects(*other).first(), u"in both");
        add(*other, u"tblNotes"_qs, {{u"Subject"_qs, u"by others"_qs}});
        other->Close();
    }
    EXPECT_EQ(subjects(*another()), (QStringList{u"in both"_qs, u"by others"_qs, u"by others"_qs}));
    EXPECT_EQ(files().filter(u".old"_qs).filter(u"-wal"_qs).size(), 1) << "the journal is kept";
}

TEST_F(NeighboursTest, AFileReplacedWithinATransactionTakesNoneOfIt) {
    addNote(u"before"_qs);
    const QString copy = path(u"copy.mdb"_qs);
    database->CopyTo(copy);
    {
        Transaction transaction(*database);
        addNote(u"never"_qs);
        put(copy);
        EXPECT_EQ(errorOf([&] { transaction.commit(); }), kErrorFileReplaced);
    }
    database->Close();
    EXPECT_EQ(subjects(*another()), QStringList{u"before"_qs});
}

TEST_F(NeighboursTest, ADeletedFileIsNotMadeAgain) {
    addNote(u"a"_qs);
    QFile::remove(path());
    EXPECT_EQ(errorOf([&] { addNote(u"b"_qs); }), kErrorFileReplaced);
    database->Close();
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(NeighboursTest, AJournalThatACrashLeftIsTakenInWhereItBelongs) {
    addNote(u"home"_qs);
    database->Close();
    database = another();
    addNote(u"in the journal"_qs);
    // As a crash leaves the folder, and as it looks after a backup without journal came back.
    const QString moved = path(u"moved"_qs);
    ASSERT_TRUE(QDir().mkdir(moved));
    for (const char* suffix : {"", "-wal", "-shm"}) {
        ASSERT_EQ(::rename(qPrintable(path() + QLatin1String(suffix)),
                           qPrintable(moved + u"/Notes.mdb" + QLatin1String(suffix))),
                  0);
    }
    database->Close();
    EXPECT_EQ(subjects(*workspace->OpenDatabase(moved + u"/Notes.mdb")).size(), 2)
        << "renamed with its folder it is the same file";
}

/// A program of another user, who may only read: tells how many notes it sees, when asked.
class Reader {
public:
    explicit Reader(const QString& file) {
        m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_program.start(QCoreApplication::applicationFilePath(), {u"--reader"_qs, file});
        EXPECT_TRUE(m_program.waitForStarted());
    }
    ~Reader() {
        m_program.closeWriteChannel();
        EXPECT_TRUE(m_program.waitForFinished());
        EXPECT_EQ(m_program.exitCode(), 0);
    }
    int notes() {
        m_program.write("?\n");
        while (!m_program.canReadLine()) {
            if (!m_program.waitForReadyRead()) {
                return -1;
            }
        }
        return m_program.readLine().trimmed().toInt();
    }

private:
    QProcess m_program;
};

TEST_F(NeighboursTest, AReaderSeesWhatIsCommittedAndLeavesNothingBehind) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can act as two users";
    }
    ASSERT_EQ(::chmod(qPrintable(folder.path()), 0777), 0);
    ASSERT_EQ(::chmod(qPrintable(path()), 0644), 0);
    addNote(u"1"_qs);
    database->Close();
    ASSERT_EQ(files(), QStringList{u"Notes.mdb"_qs});
    {
        Reader early(path());
        EXPECT_EQ(early.notes(), 1) << "nobody else has it open";
        EXPECT_EQ(files(), QStringList{u"Notes.mdb"_qs});
        database = another();
        addNote(u"2"_qs);
        EXPECT_EQ(early.notes(), 2) << "somebody has begun to write";
        Reader late(path());
        EXPECT_EQ(late.notes(), 2);
        addNote(u"3"_qs);
        EXPECT_EQ(early.notes(), 3);
        EXPECT_EQ(late.notes(), 3);
        database->Close();
        EXPECT_EQ(early.notes(), 3) << "and has finished";
        database = another();
        addNote(u"4"_qs);
        EXPECT_EQ(early.notes(), 4) << "and has begun again";
    }
    database->Close();
    for (const QString& file : files()) {
        EXPECT_NE(QFileInfo(folder.filePath(file)).ownerId(), kNobody) << qPrintable(file);
    }
    database = another();
    addNote(u"5"_qs);
    EXPECT_EQ(subjects(*database).size(), 5) << "the owner is not locked out";
}

TEST_F(NeighboursTest, ANewFileBelongsToTheGroupOfItsFolder) {
    constexpr gid_t kGroup = 12345;
    if (::chown(qPrintable(folder.path()), uid_t(-1), kGroup) != 0) {
        GTEST_SKIP() << "only root can give a folder to a group";
    }
    const mode_t before = ::umask(0007);
    workspace->CreateDatabase(path(u"new.mdb"_qs))->Close();
    ::umask(before);
    struct stat status {};
    ASSERT_EQ(::stat(qPrintable(path(u"new.mdb"_qs)), &status), 0);
    EXPECT_EQ(status.st_gid, kGroup);
    EXPECT_EQ(status.st_mode & 0777U, 0660U);
}

/// Another program that keeps the whole file to itself.
class Holder {
public:
    explicit Holder(const QString& file) {
        EXPECT_EQ(sqlite3_open(qPrintable(file), &m_file), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(m_file, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~Holder() { sqlite3_close(m_file); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    sqlite3* m_file = nullptr;
};

/// Is asked a few times and then does something.
class FakeWatch final : public LockWatch {
public:
    explicit FakeWatch(std::function<bool()> then) : m_then(std::move(then)) {}
    bool goOn(qint64) override { return ++m_asked < 3 || m_then(); }
    void ended() noexcept override { ++endings; }
    int endings = 0;

private:
    std::function<bool()> m_then;
    int m_asked = 0;
};

class LockedTest : public NeighboursTest {
protected:
    LockedTest() {
        database->Close();
        database = createWorkspace({Clock::instance(), files_, &network})->OpenDatabase(path());
        addNote(u"there"_qs);
    }
    void write(const QString& subject) {
        Transaction transaction(*database);
        addNote(subject);
        transaction.commit();
    }
    FileSystem files_;
    FixedMount network{true};
};

TEST_F(LockedTest, APageOfBriefReadsGoesOnWithoutAndComesBack) {
    const auto seek = database->OpenRecordset(u"tblNotes"_qs, RecordsetType::Table);
    {
        const Holder holder(path());
        const BriefWaits brief(database);
        QElapsedTimer timer;
        timer.start();
        for (int row = 0; row < 40; ++row) {
            EXPECT_EQ(errorOf([&] { seek->Seek(u"=", {row}); }), kErrorLocked);
        }
        EXPECT_LT(timer.elapsed(), 1000) << "and not 50 ms for each row";
        EXPECT_TRUE(brief.wereInVain());
    }
    const BriefWaits brief(database);
    seek->Seek(u"=", {1});
    EXPECT_FALSE(seek->NoMatch());
    EXPECT_FALSE(brief.wereInVain());
}

TEST_F(LockedTest, AWriteWaitsForAsLongAsWhoeverWatchesIt) {
    auto holder = std::make_unique<Holder>(path());
    FakeWatch cancels([] { return false; });
    database->setLockWatch(&cancels);
    EXPECT_EQ(errorOf([&] { write(u"cancelled"_qs); }), kErrorLocked);
    EXPECT_EQ(cancels.endings, 1);
    FakeWatch waits([&] {
        holder.reset();
        return true;
    });
    database->setLockWatch(&waits);
    write(u"waited"_qs);
    EXPECT_EQ(subjects(*database), (QStringList{u"there"_qs, u"waited"_qs}));
    holder = std::make_unique<Holder>(path());
    FakeWatch closes([&] {
        holder.reset();
        database->Close();
        return true;
    });
    database->setLockWatch(&closes);
    EXPECT_EQ(errorOf([&] { write(u"closed meanwhile"_qs); }), kErrorObjectClosed);
    EXPECT_EQ(subjects(*another()).size(), 2);
}

} // namespace

} // namespace yrw::dao
