#include "platform/dao/sqlite/SqliteBackup.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/LockWaits.h"
#include "platform/dao/sqlite/ReadHandle.h"
#include "platform/dao/sqlite/Statement.h"
#include "platform/disk/Unfinished.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Database");
constexpr int kPagesAtOnce = 16;
constexpr int kAllPages = -1;
constexpr int kPagesToDisk = 1024; ///< so many are put on the disk at a time, lest the end waits
constexpr int kMostRestarts = 5;   ///< then the rest is copied in one go

[[noreturn]] void raise(int number, const QString& text) {
    throw AutomationError(number, kSource, text);
}

/// Where a copy goes: its folder as it really is, and the name in it.
struct Target {
    QString path;
    QString shown;
};

Target targetFor(const QString& database, const QString& path, ExistingCopy existing) {
    const QFileInfo info(path);
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    Target target{folder + u'/' + info.fileName(), path};
    if (folder.isEmpty() || info.fileName().isEmpty()) {
        raise(kErrorDiskFull,
              QStringLiteral("%1 could not be written: there is no such folder.").arg(path));
    }
    const QString original = QFileInfo(database).canonicalFilePath();
    for (const char16_t* const suffix : {u"", u"-wal", u"-shm", u"-journal"}) {
        if (target.path == original + QString::fromUtf16(suffix)) {
            raise(
                kErrorCannotOpenDatabase,
                QStringLiteral("%1 belongs to the database itself; name another file.").arg(path));
        }
    }
    struct stat there {};
    struct stat source {};
    if (::lstat(QFile::encodeName(target.path).constData(), &there) != 0) {
        return target;
    }
    const bool isItself = ::stat(QFile::encodeName(original).constData(), &source) == 0 &&
                          there.st_dev == source.st_dev && there.st_ino == source.st_ino;
    const bool isTaken = existing == ExistingCopy::Keep || S_ISDIR(there.st_mode) || isItself;
    if (isTaken) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 is there already.").arg(path));
    }
    return target;
}

class SqliteOnlineBackup final : public OnlineBackup {
public:
    SqliteOnlineBackup(const QString& database, Target target, ExistingCopy existing, Clock& clock)
        : m_target(std::move(target)), m_existing(existing), m_clock(clock), m_source(database),
          m_database(QFile::encodeName(database)) {
        const int file = makeUnfinished(m_target.path, m_unfinished, S_IRUSR | S_IWUSR);
        if (file < 0) {
            m_unfinished.clear();
            failToWrite();
        }
        m_file.open(file, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
        try {
            open();
        } catch (...) {
            discard();
            throw;
        }
    }
    SqliteOnlineBackup(const SqliteOnlineBackup&) = delete;
    SqliteOnlineBackup& operator=(const SqliteOnlineBackup&) = delete;
    ~SqliteOnlineBackup() override { discard(); }

    bool step(int milliseconds) override {
        const qint64 deadline = m_clock.monotonicMs() + milliseconds;
        while (m_backup != nullptr) {
            const bool isWaiting =
                !copyPages(m_restarts > kMostRestarts ? kAllPages : kPagesAtOnce);
            if (m_isComplete) {
                place();
                return false;
            }
            if (isWaiting || m_clock.monotonicMs() >= deadline) {
                return true;
            }
        }
        return false;
    }

    void finish() override {
        sqlite3_busy_timeout(m_source.get(), LockWaits::kUsualMs);
        while (m_backup != nullptr) {
            if (!copyPages(kAllPages)) {
                raiseEngineError(m_source.get(), SQLITE_BUSY);
            }
            if (m_isComplete) {
                place();
            }
        }
    }

private:
    void open() {
        sqlite3* copy = nullptr;
        const int code = sqlite3_open_v2(
            QFile::encodeName(m_unfinished).constData(), &copy,
            SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX, nullptr);
        m_copy = copy;
        if (code != SQLITE_OK) {
            raiseEngineError(copy, code);
        }
        // A copy that does not come to its end is thrown away: no journal, and one sync at the end.
        sqlite3_exec(copy, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF", nullptr, nullptr,
                     nullptr);
        sqlite3* source = m_source.get();
        Statement mode(source, QStringLiteral("PRAGMA journal_mode"));
        if (mode.step() && mode.text(0) == u"wal") {
            // One state from the first page to the last, and nobody is kept from writing.
            sqlite3_exec(source, "BEGIN; SELECT count(*) FROM sqlite_schema", nullptr, nullptr,
                         nullptr);
        }
        m_backup = sqlite3_backup_init(copy, "main", source, "main");
        if (m_backup == nullptr) {
            raiseEngineError(copy, sqlite3_extended_errcode(copy));
        }
    }

    /// Copies some pages; false when the file is locked just now.
    bool copyPages(int count) {
        const int before = sqlite3_backup_remaining(m_backup);
        const int code = sqlite3_backup_step(m_backup, count);
        switch (code & 0xff) {
        case SQLITE_DONE:
            m_isComplete = true;
            return true;
        case SQLITE_OK:
            m_restarts += before > 0 && sqlite3_backup_remaining(m_backup) >= before ? 1 : 0;
            putOnDisk(kPagesAtOnce);
            return true;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return false;
        case SQLITE_FULL:
        case SQLITE_IOERR:
            failToWrite();
        default:
            raiseEngineError(m_source.get(), code);
        }
    }

    void putOnDisk(int pages) {
        m_pagesInMemory += pages;
        if (m_pagesInMemory >= kPagesToDisk) {
            m_pagesInMemory = 0;
            ::fdatasync(m_file.handle());
        }
    }

    /// The pages are complete: makes a file of them.
    void place() {
        if (!m_source.isOfOneState()) {
            raise(kErrorLocked, QStringLiteral("%1 was written to while it was copied. Try again.")
                                    .arg(QFile::decodeName(m_database)));
        }
        const int code = sqlite3_backup_finish(m_backup);
        m_backup = nullptr;
        const int closed = sqlite3_close(m_copy);
        m_copy = nullptr;
        if (code != SQLITE_OK || closed != SQLITE_OK) {
            failToWrite();
        }
        // A copy has no journal beside it, and none is wanted where it lies.
        const char rollback[] = {1, 1};
        constexpr off_t versions = 18;
        if (::pwrite(m_file.handle(), rollback, sizeof rollback, versions) != sizeof rollback) {
            failToWrite();
        }
        takeModeOfOriginal();
        if (::fsync(m_file.handle()) != 0) {
            failToWrite();
        }
        giveName();
        m_unfinished.clear();
        m_file.close();
        syncFolderOf(m_target.path);
    }

    void takeModeOfOriginal() {
        struct stat original {};
        if (::stat(m_database.constData(), &original) != 0) {
            return; // readable by its owner alone
        }
        mode_t mode = original.st_mode & 0777;
        if (::fchown(m_file.handle(), uid_t(-1), original.st_gid) != 0) {
            mode &= ~mode_t(S_IRWXG); // another group must not get what the right one had
        }
        if (::fchmod(m_file.handle(), mode) != 0) {
            failToWrite();
        }
    }

    void giveName() {
        const bool isNamed = m_existing == ExistingCopy::Keep
                                 ? renameWithoutReplacing(m_unfinished, m_target.path)
                                 : ::rename(QFile::encodeName(m_unfinished).constData(),
                                            QFile::encodeName(m_target.path).constData()) == 0;
        if (!isNamed && errno == EEXIST) {
            raise(kErrorCannotOpenDatabase,
                  QStringLiteral("%1 is there already.").arg(m_target.shown));
        }
        if (!isNamed) {
            failToWrite();
        }
    }

    [[noreturn]] void failToWrite() const {
        raise(kErrorDiskFull,
              QStringLiteral("%1 could not be written: %2")
                  .arg(m_target.shown, QString::fromLocal8Bit(std::strerror(errno))));
    }

    void discard() noexcept {
        if (m_backup != nullptr) {
            sqlite3_backup_finish(m_backup);
            m_backup = nullptr;
        }
        sqlite3_close(m_copy);
        m_copy = nullptr;
        if (!m_unfinished.isEmpty()) {
            ::unlink(QFile::encodeName(m_unfinished).constData());
            m_unfinished.clear();
        }
    }

    Target m_target;
    ExistingCopy m_existing;
    Clock& m_clock;
    ReadHandle m_source;
    QByteArray m_database;
    QString m_unfinished; ///< empty once there is no such file
    QFile m_file;
    sqlite3* m_copy = nullptr;
    sqlite3_backup* m_backup = nullptr;
    int m_pagesInMemory = 0;
    int m_restarts = 0;
    bool m_isComplete = false;
};

} // namespace

std::unique_ptr<OnlineBackup> backUpFile(const QString& file, const QString& path,
                                         ExistingCopy existing, Clock& clock) {
    return std::make_unique<SqliteOnlineBackup>(file, targetFor(file, path, existing), existing,
                                                clock);
}

} // namespace yrw::dao
