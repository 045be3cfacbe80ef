#include "platform/dao/sqlite/SqliteConnection.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/LockWatch.h"
#include "platform/dao/sqlite/PlaceRecord.h"
#include "platform/dao/sqlite/SalvagedRows.h"
#include "platform/dao/sqlite/SqliteBackup.h"
#include "platform/dao/sqlite/SqliteTextIndex.h"
#include "platform/dao/sqlite/Statement.h"
#include "platform/files/FileSystem.h"

#include <QScopeGuard>

#include <utility>

#include <sqlite3.h>

namespace yrw::dao {

SqliteConnection::SqliteConnection(std::unique_ptr<SqliteFile> file, Use use)
    : Connection(file->clock()), m_path(file->path()), m_use(use), m_file(std::move(file)),
      m_schema(*m_file), m_takesPlace(use == Use::LocalWriter) {}

SqliteConnection::~SqliteConnection() {
    SqliteConnection::close();
}

void SqliteConnection::close() {
    if (isOpen()) {
        Connection::close();
        m_file.reset();
    }
}

std::unique_ptr<Cursor> SqliteConnection::prepare(const QString& sql, SqlOrigin origin) const {
    return std::make_unique<Statement>(m_file->handle(), sql, origin);
}

qint64 SqliteConnection::changes() const noexcept {
    return sqlite3_changes64(m_file->handle());
}

qint64 SqliteConnection::lastKey() const noexcept {
    return sqlite3_last_insert_rowid(m_file->handle());
}

QString SqliteConnection::indexHint(const QString& index) const {
    return u" INDEXED BY " + quotedName(index);
}

qint64 SqliteConnection::number(const QString& pragma) {
    Cursor& statement = kept(u"PRAGMA " + pragma);
    statement.step();
    const qint64 number = statement.integer(0);
    statement.reset();
    return number;
}

qint64 SqliteConnection::schemaState() {
    return number(QStringLiteral("schema_version"));
}

qint64 SqliteConnection::dataVersion() {
    endAbandonedRead();
    return number(QStringLiteral("data_version"));
}

void SqliteConnection::setLockWatch(LockWatch* watch) {
    m_watch = watch;
    setLockPatience(watch != nullptr ? LockWaits::kWatchedMs : LockWaits::kUsualMs);
}

void SqliteConnection::startWrite() {
    settlePlace();
    beforeCommit();
    if (m_watch == nullptr || m_file->lockWaits().isBrief()) {
        kept(QStringLiteral("BEGIN IMMEDIATE")).run();
    } else {
        waitToWrite();
    }
}

void SqliteConnection::waitToWrite() {
    // Between two tries nothing is under way here, so that whoever watches may handle events. The
    // commit could not wait like that; without a write-ahead journal its lock is taken now.
    const bool isAlone = scalar(QStringLiteral("PRAGMA journal_mode")).toString() != u"wal";
    const int before = setLockPatience(0);
    const auto after = qScopeGuard([this, before] {
        if (isOpen()) {
            setLockPatience(before);
        }
        if (m_watch != nullptr) {
            m_watch->ended();
        }
    });
    const qint64 begun = clock().monotonicMs();
    while (isOpen()) {
        endRead(); // of what was painted meanwhile
        try {
            kept(isAlone ? QStringLiteral("BEGIN EXCLUSIVE") : QStringLiteral("BEGIN IMMEDIATE"))
                .run();
            return;
        } catch (const AutomationError& error) {
            if (error.number() != kErrorLocked || m_watch == nullptr ||
                !m_watch->goOn(clock().monotonicMs() - begun)) {
                throw;
            }
        }
    }
}

bool SqliteConnection::isTransactionLive() const {
    return sqlite3_get_autocommit(m_file->handle()) == 0;
}

void SqliteConnection::readBegins() {
    if (m_file->hasNewJournal()) {
        dropStatements();
        m_file->reopenAsReader();
    }
}

void SqliteConnection::expectLongRead() noexcept {
    if (m_use == Use::LocalWriter && isReading() && !m_mapped) {
        sqlite3_exec(m_file->handle(), "PRAGMA mmap_size = 1073741824", nullptr, nullptr, nullptr);
        m_mapped = true;
    }
}

void SqliteConnection::readEnded() noexcept {
    if (isTransactionLive()) {
        sqlite3_exec(m_file->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    if (m_mapped) {
        sqlite3_exec(m_file->handle(), "PRAGMA mmap_size = 0", nullptr, nullptr, nullptr);
        m_mapped = false;
    }
}

/// Has the first write put the file's place into it: a file that turns out to be of no use is not
/// written to.
void SqliteConnection::settlePlace() {
    if (!std::exchange(m_takesPlace, false)) {
        return;
    }
    auto tryAgain = qScopeGuard([this] { m_takesPlace = true; });
    const bool isForeign = m_placeLock || isAtForeignPlace(m_path, clock());
    if (isForeign && !m_placeLock) {
        m_placeLock = std::make_unique<FolderLock>(FileSystem::folderOf(m_path));
    }
    recordPlace(*this, *m_file, isForeign);
    tryAgain.dismiss();
    m_placeLock.reset();
}

void SqliteConnection::execScript(const QString& script) {
    sqlite3* handle = m_file->handle();
    const QByteArray text = script.toUtf8();
    const PreparingSql preparing(SqlOrigin::Script);
    beginStep(stepLimitOf(SqlOrigin::Script));
    if (sqlite3_exec(handle, text.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        raiseEngineError(handle, sqlite3_extended_errcode(handle));
    }
}

std::unique_ptr<TextIndex> SqliteConnection::textIndex(const Ref<Counted>& keeper,
                                                       const TextIndexNames& names) {
    return std::make_unique<SqliteTextIndex>(keeper, *this, *m_file, names);
}

std::unique_ptr<OnlineBackup> SqliteConnection::backup(const QString& path,
                                                       ExistingCopy existing) const {
    return backUpFile(m_path, path, existing, clock());
}

SalvagedTable SqliteConnection::salvage(const QString& damaged, const QString& table,
                                        const QStringList& columns) {
    return salvageRows(damaged, table, columns, *m_file);
}

} // namespace yrw::dao
