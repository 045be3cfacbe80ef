#include "platform/dao/sqlite/DatabaseCopy.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/Statement.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Database");

[[noreturn]] void fail(int number, const QString& words, const QString& path) {
    throw AutomationError(number, kSource, words.arg(path));
}

/// A file under a name of its own, removed unless it was given its final one.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const QString& target)
        : m_name(QFile::encodeName(target) + ".XXXXXX"),
          m_file(::mkostemp(m_name.data(), O_CLOEXEC)) {
        if (m_file < 0) {
            fail(kErrorCannotOpenDatabase, QStringLiteral("%1 could not be made."), target);
        }
    }
    ~UnfinishedFile() {
        if (m_file >= 0) {
            ::close(m_file);
            ::unlink(m_name.constData());
        }
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    [[nodiscard]] const QByteArray& name() const noexcept { return m_name; }

    void takeRightsOf(const QString& original) const {
        struct stat status {};
        if (::stat(QFile::encodeName(original).constData(), &status) != 0) {
            return; // stays readable for its owner alone
        }
        const bool sameGroup = ::fchown(m_file, uid_t(-1), status.st_gid) == 0;
        ::fchmod(m_file, status.st_mode & (sameGroup ? 0777U : 0707U));
    }

    void finish(const QString& target) {
        if (::fsync(m_file) != 0) {
            fail(kErrorDiskFull, QStringLiteral("%1 could not be written."), target);
        }
        if (!renameWithoutReplacing(QFile::decodeName(m_name), target)) {
            fail(kErrorCannotOpenDatabase, QStringLiteral("%1 is there already."), target);
        }
        ::close(m_file);
        m_file = -1;
    }

private:
    QByteArray m_name;
    int m_file;
};

struct Closer {
    void operator()(sqlite3* connection) const noexcept { sqlite3_close(connection); }
};

void copyPages(sqlite3* source, const QByteArray& target) {
    sqlite3* handle = nullptr;
    const int opened = sqlite3_open_v2(
        target.constData(), &handle,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX, nullptr);
    const std::unique_ptr<sqlite3, Closer> copy(handle);
    if (opened != SQLITE_OK) {
        raiseEngineError(handle, opened);
    }
    // Nobody sees the file before it is complete.
    sqlite3_exec(handle, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF", nullptr, nullptr,
                 nullptr);
    sqlite3_backup* backup = sqlite3_backup_init(handle, "main", source, "main");
    if (backup == nullptr) {
        raiseEngineError(handle, sqlite3_extended_errcode(handle));
    }
    constexpr int kAllPages = -1;
    const int step = sqlite3_backup_step(backup, kAllPages);
    const int code = sqlite3_backup_finish(backup);
    if (step != SQLITE_DONE || code != SQLITE_OK) {
        const int failure = code != SQLITE_OK ? code : step;
        raiseEngineError((failure & 0xff) == SQLITE_BUSY ? source : handle, failure);
    }
}

} // namespace

bool renameWithoutReplacing(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) ==
        0) {
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    // Not every file system can do both at once.
    struct stat status {};
    return ::lstat(target.constData(), &status) != 0 && errno == ENOENT &&
           ::rename(source.constData(), target.constData()) == 0;
}

void copyDatabase(sqlite3* source, const QString& original, const QString& target) {
    struct stat status {};
    if (::lstat(QFile::encodeName(target).constData(), &status) == 0) {
        fail(kErrorCannotOpenDatabase, QStringLiteral("%1 is there already."), target);
    }
    UnfinishedFile copy(target);
    copyPages(source, copy.name());
    copy.takeRightsOf(original);
    copy.finish(target);
}

} // namespace yrw::dao
