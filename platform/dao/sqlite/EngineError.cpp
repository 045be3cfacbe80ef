#include "platform/dao/sqlite/Statement.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/Journal.h"

#include <sqlite3.h>

namespace yrw::dao {

namespace {

struct Meaning {
    int number;
    QString words; ///< with %1 for the file, %2 for who holds it or for the engine's own words
};

Meaning meaningOf(int code) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return {kErrorLocked, QStringLiteral("%1 is in use: %2 keeps it locked. "
                                             "Nothing was changed; try again when that program has "
                                             "finished.")};
    case SQLITE_READONLY:
        return {kErrorReadOnly, QStringLiteral("%1 can only be read. Ask for the right to write to "
                                               "the file and its folder.")};
    case SQLITE_FULL:
        return {kErrorDiskFull, QStringLiteral("%1 could not be written: the disk is full. Make "
                                               "room and try again; nothing was changed.")};
    case SQLITE_CANTOPEN:
        return {kErrorCannotOpenDatabase,
                QStringLiteral("%1 cannot be opened. Check that the file is there and that you may "
                               "read it.")};
    case SQLITE_NOTADB:
        return {kErrorNotADatabase, QStringLiteral("%1 is not a database. Restore it from a copy "
                                                   "or move it away.")};
    case SQLITE_CORRUPT:
        return {kErrorNotADatabase, QStringLiteral("%1 is damaged (%2). Restore it from a copy.")};
    case SQLITE_INTERRUPT:
        return {kErrorDatabaseEngine,
                QStringLiteral("A query in %1 was stopped, because it did not come to an end. "
                               "Somebody may have changed the queries in that file; have it "
                               "checked.")};
    case SQLITE_AUTH:
        return {kErrorDatabaseEngine,
                QStringLiteral("A query in %1 was refused, because it asks for more than the "
                               "file's own data (%2). Somebody may have changed the queries in "
                               "that file; have it checked.")};
    case SQLITE_IOERR:
        break;
    default:
        return {kErrorDatabaseEngine, QStringLiteral("%1: %2")};
    }
    switch (code) {
    case SQLITE_IOERR_WRITE:
    case SQLITE_IOERR_FSYNC:
    case SQLITE_IOERR_DIR_FSYNC:
    case SQLITE_IOERR_TRUNCATE:
    case SQLITE_IOERR_SHMSIZE:
    case SQLITE_IOERR_COMMIT_ATOMIC:
        return {kErrorDiskFull, QStringLiteral("%1 could not be written. Check the disk and try "
                                               "again; nothing was changed.")};
    default:
        return {kErrorDatabaseEngine, QStringLiteral("%1 could not be read or written (%2). Check "
                                                     "the disk and try again.")};
    }
}

} // namespace

void raiseEngineError(sqlite3* connection, int code) {
    const QString words = connection != nullptr ? QString::fromUtf8(sqlite3_errmsg(connection))
                                                : QString::fromUtf8(sqlite3_errstr(code));
    const char* name = connection != nullptr ? sqlite3_db_filename(connection, "main") : nullptr;
    const QString file = QString::fromUtf8(name);
    // A function that is not allowed comes with the code of any wrong text.
    const bool refused = code == SQLITE_ERROR && words.startsWith(u"not authorized");
    const Meaning meaning = meaningOf(refused ? SQLITE_AUTH : code);
    QString detail = words;
    if (meaning.number == kErrorLocked) {
        const QString holders = lockHolders(file);
        detail = holders.isEmpty() ? QStringLiteral("another program") : holders;
    }
    QString description = meaning.words;
    description.replace(u"%1"_qs, file.isEmpty() ? QStringLiteral("The database") : file);
    description.replace(u"%2"_qs, detail);
    throw AutomationError(meaning.number, QStringLiteral("YRW.Database"), description);
}

} // namespace yrw::dao
