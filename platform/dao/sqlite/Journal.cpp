#include "platform/dao/sqlite/Journal.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/SqliteFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

// The file's application id serves as the mark, for it is there before any table.
constexpr qint64 kSharedOverNetwork = 0x5952574e;
constexpr int kAttempts = 3;

bool isMarked(const SqliteFile& file) {
    return file.scalar(QStringLiteral("PRAGMA application_id")).toLongLong() == kSharedOverNetwork;
}

QString mode(const SqliteFile& file) {
    return file.scalar(QStringLiteral("PRAGMA journal_mode")).toString();
}

/// Asks for another journal; false when others who have the file open prevent it.
bool turn(const SqliteFile& file, const QString& wanted) {
    try {
        return file.scalar(u"PRAGMA journal_mode = " + wanted).toString() == wanted;
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLocked) {
            throw;
        }
        return false;
    }
}

void shareOverNetwork(const SqliteFile& file) {
    // A host on the file's own machine may turn it back until it sees the mark.
    for (int i = 0; i < kAttempts; ++i) {
        if (mode(file) == u"wal" && !turn(file, QStringLiteral("delete"))) {
            break;
        }
        if (!isMarked(file)) {
            file.execute(QStringLiteral("PRAGMA application_id = %1").arg(kSharedOverNetwork));
        }
        if (mode(file) != u"wal") {
            return;
        }
    }
    throw AutomationError(kErrorLocked, QStringLiteral("YRW.Workspace"),
                          QStringLiteral("%1 is open in a way that cannot be shared over a "
                                         "network. Close it in every other program and open it "
                                         "again.")
                              .arg(file.path()));
}

} // namespace

void settleJournal(const SqliteFile& file, bool onNetwork) {
    if (onNetwork || isMarked(file)) {
        shareOverNetwork(file);
        return;
    }
    if (mode(file) == u"wal") {
        return;
    }
    // Somebody who is writing just now keeps the rollback journal for us all; that works too.
    const bool turned = turn(file, QStringLiteral("wal"));
    if (turned && isMarked(file)) {
        shareOverNetwork(file);
    }
}

bool hasWriteAheadJournal(const SqliteFile& file) {
    constexpr sqlite3_int64 kReadVersion = 19;
    sqlite3_file* opened = nullptr;
    unsigned char version = 0;
    // Opening the file past the engine would give up the locks that this process has on it.
    return sqlite3_file_control(file.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &opened) ==
               SQLITE_OK &&
           opened->pMethods != nullptr &&
           opened->pMethods->xRead(opened, &version, 1, kReadVersion) == SQLITE_OK && version == 2;
}

bool mayRead(const QString& path) {
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK, AT_EACCESS) == 0;
}

bool mayWrite(const QString& path) {
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

namespace {

QString inodeOf(const QString& file) {
    struct stat status {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0) {
        return {};
    }
    return QString::number(status.st_ino);
}

QString processName(const QString& process) {
    QFile name(u"/proc/" + process + u"/comm");
    const bool known = name.open(QIODevice::ReadOnly);
    return (known ? QString::fromUtf8(name.readAll()).trimmed() + u' ' : QString()) + u"(process " +
           process + u')';
}

} // namespace

QString lockHolders(const QString& file) {
    const QStringList inodes{inodeOf(file), inodeOf(file + u"-shm")};
    const QString self = QString::number(QCoreApplication::applicationPid());
    QFile locks(QStringLiteral("/proc/locks"));
    if (!locks.open(QIODevice::ReadOnly)) {
        return {};
    }
    QStringList writers;
    QStringList readers;
    // "1: POSIX  ADVISORY  WRITE 1234 08:01:5678 120 120"
    for (const QString& line : QString::fromUtf8(locks.readAll()).split(u'\n')) {
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        if (words.size() < 6 || words[4] == self || !inodes.contains(words[5].section(u':', -1)) ||
            words[5].section(u':', -1).isEmpty()) {
            continue;
        }
        (words[3] == u"WRITE" ? writers : readers) += processName(words[4]);
    }
    QStringList& who = writers.isEmpty() ? readers : writers;
    who.removeDuplicates();
    return who.join(u", ");
}

} // namespace yrw::dao
