#include "platform/dao/sqlite/Statement.h"

#include "platform/component/AutomationError.h"

#include <sqlite3.h>

namespace yrw::dao {

namespace {

struct Meaning {
    int number;
    QString words; ///< with %1 for the file
};

Meaning meaningOf(int code, const QString& engineWords) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return {kErrorLocked, QStringLiteral("%1 is in use: another program has kept it locked for "
                                             "5 seconds. Nothing was changed; try again when that "
                                             "program has finished.")};
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
        return {
            kErrorNotADatabase,
            QStringLiteral("%1 is damaged (%2). Restore it from a copy.").arg(u"%1", engineWords)};
    case SQLITE_IOERR:
        break;
    default:
        return {kErrorDatabaseEngine, QStringLiteral("%1: ") + engineWords};
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
                                                     "the disk and try again.")
                                          .arg(u"%1", engineWords)};
    }
}

} // namespace

void raiseEngineError(sqlite3* connection, int code) {
    const QString words = connection != nullptr ? QString::fromUtf8(sqlite3_errmsg(connection))
                                                : QString::fromUtf8(sqlite3_errstr(code));
    const char* name = connection != nullptr ? sqlite3_db_filename(connection, "main") : nullptr;
    const QString file =
        name != nullptr && *name != '\0' ? QString::fromUtf8(name) : QStringLiteral("The database");
    const Meaning meaning = meaningOf(code, words);
    QString description = meaning.words;
    description.replace(u"%1"_qs, file);
    throw AutomationError(meaning.number, QStringLiteral("YRW.Database"), description);
}

} // namespace yrw::dao
