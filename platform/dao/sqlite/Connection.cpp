#include "platform/dao/sqlite/Connection.h"

#include "platform/component/AutomationError.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QThread>
#include <QUrl>

#include <algorithm>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

constexpr qint64 kLockDeadlineMs = 5000;
constexpr int kShortestSleepUs = 200;
constexpr int kLongestSleepUs = 1700;

void tellNow(sqlite3_context* context, int, sqlite3_value**) {
    const auto* clock = static_cast<Clock*>(sqlite3_user_data(context));
    const QByteArray text = dateToText(clock->now()).toUtf8();
    sqlite3_result_text(context, text.constData(), int(text.size()), SQLITE_TRANSIENT);
}

int openFlags(Connection::Access access) {
    switch (access) {
    case Connection::Access::ReadWrite:
        return SQLITE_OPEN_READWRITE;
    case Connection::Access::Create:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case Connection::Access::ReadOnly:
        return SQLITE_OPEN_READONLY;
    case Connection::Access::Immutable:
        return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    }
    return SQLITE_OPEN_READONLY;
}

QByteArray openName(const QString& path, Connection::Access access) {
    if (access != Connection::Access::Immutable) {
        return path.toUtf8();
    }
    return QByteArrayLiteral("file:") + QUrl::toPercentEncoding(path, QByteArrayLiteral("/")) +
           QByteArrayLiteral("?immutable=1");
}

} // namespace

ReadHolder::~ReadHolder() = default;

void Connection::Closer::operator()(sqlite3* connection) const noexcept {
    sqlite3_close_v2(connection);
}

Connection::Connection(const QString& path, Access access, Clock& clock)
    : m_clock(clock), m_turn(std::make_unique<QObject>()) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(openName(path, access).constData(), &handle,
                                     openFlags(access) | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK) {
        raiseEngineError(handle, code);
    }
    m_wait.clock = &clock;
    sqlite3_extended_result_codes(handle, 1);
    // Pages for some thousand notes; taken only as they are read.
    sqlite3_exec(handle, "PRAGMA cache_size = -16384", nullptr, nullptr, nullptr);
    // Moving the journal's pages home costs three syncs; the journal grows to 16 MB before it is
    // due.
    sqlite3_wal_autocheckpoint(handle, 4000);
    sqlite3_busy_handler(handle, &Connection::waitForLock, &m_wait);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_create_function_v2(handle, "Now", 0, SQLITE_UTF8, &clock, &tellNow, nullptr, nullptr,
                               nullptr);
}

Connection::~Connection() = default;

int Connection::waitForLock(void* argument, int tries) noexcept {
    auto* wait = static_cast<Wait*>(argument);
    const qint64 now = wait->clock->monotonicMs();
    if (tries == 0) {
        wait->startedMs = now;
        wait->sleptUs = 0;
    }
    // The sleeps are summed as well, for a clock that stands still.
    if (now - wait->startedMs >= kLockDeadlineMs || wait->sleptUs >= kLockDeadlineMs * 1000) {
        return 0;
    }
    const int sleep = QRandomGenerator::global()->bounded(kShortestSleepUs, kLongestSleepUs + 1);
    QThread::usleep(static_cast<unsigned long>(sleep));
    wait->sleptUs += sleep;
    return 1;
}

void Connection::execute(const QString& sql) const {
    Statement(handle(), sql).run();
}

Statement& Connection::kept(const QString& sql) {
    constexpr size_t kMost = 32;
    const auto found = std::find_if(m_kept.begin(), m_kept.end(),
                                    [&sql](const auto& entry) { return entry.first == sql; });
    if (found != m_kept.end()) {
        m_kept.splice(m_kept.begin(), m_kept, found);
    } else {
        m_kept.emplace_front(sql, Statement(handle(), sql));
    }
    if (m_kept.size() > kMost) {
        m_kept.pop_back();
    }
    m_kept.front().second.reset();
    return m_kept.front().second;
}

QVariant Connection::scalar(const QString& sql) const {
    Statement statement(handle(), sql);
    return statement.step() ? statement.value(0, std::nullopt) : QVariant();
}

qint64 Connection::changes() const noexcept {
    return sqlite3_changes64(handle());
}

qint64 Connection::lastKey() const noexcept {
    return sqlite3_last_insert_rowid(handle());
}

void Connection::runKept(Statement& statement, const char* sql) const {
    if (statement.isEmpty()) {
        statement = Statement(handle(), QString::fromLatin1(sql));
    }
    statement.run();
}

void Connection::begin() {
    if (m_depth == 0) {
        endRead();
        runKept(m_beginWrite, "BEGIN IMMEDIATE");
    } else {
        requireLiveTransaction();
        kept(QStringLiteral("SAVEPOINT yrw%1").arg(m_depth)).run();
    }
    ++m_depth;
}

bool Connection::tryBegin() {
    sqlite3_busy_handler(handle(), nullptr, nullptr);
    const auto waitAgain =
        qScopeGuard([this] { sqlite3_busy_handler(handle(), &Connection::waitForLock, &m_wait); });
    try {
        begin();
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLocked) {
            throw;
        }
        return false;
    }
    return true;
}

void Connection::requireLiveTransaction() const {
    if (m_depth > 0 && sqlite3_get_autocommit(handle()) != 0) {
        throw AutomationError(kErrorDatabaseEngine, QStringLiteral("YRW.Database"),
                              QStringLiteral("The transaction was given up after an earlier "
                                             "failure; nothing of it was stored."));
    }
}

void Connection::commit() {
    if (m_depth == 0) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Database"),
                              QStringLiteral("There is no transaction to commit."));
    }
    requireLiveTransaction();
    if (m_depth == 1) {
        releaseHolders();
        runKept(m_commit, "COMMIT");
    } else {
        kept(QStringLiteral("RELEASE yrw%1").arg(m_depth - 1)).run();
    }
    --m_depth;
}

void Connection::rollback() {
    if (m_depth == 0) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Database"),
                              QStringLiteral("There is no transaction to roll back."));
    }
    const int level = --m_depth;
    if (sqlite3_get_autocommit(handle()) != 0) {
        return; // the engine has done it
    }
    releaseHolders();
    if (level == 0) {
        execute(QStringLiteral("ROLLBACK"));
    } else {
        execute(QStringLiteral("ROLLBACK TO yrw%1").arg(level));
        execute(QStringLiteral("RELEASE yrw%1").arg(level));
    }
}

bool Connection::isInLoop() const {
    return QCoreApplication::instance() != nullptr && QThread::currentThread()->loopLevel() > 0;
}

void Connection::endAbandonedRead() noexcept {
    if (m_reading && !isInLoop()) {
        endRead();
    }
}

bool Connection::beginRead() {
    if (m_depth > 0) {
        return true;
    }
    if (!isInLoop()) {
        endAbandonedRead();
        return false;
    }
    if (m_reading) {
        return true;
    }
    runKept(m_beginRead, "BEGIN");
    m_reading = true;
    QMetaObject::invokeMethod(
        m_turn.get(), [this] { endRead(); }, Qt::QueuedConnection);
    return true;
}

void Connection::mapLongRead() noexcept {
    if (m_mayMap && m_reading && !m_mapped) {
        sqlite3_exec(handle(), "PRAGMA mmap_size = 1073741824", nullptr, nullptr, nullptr);
        m_mapped = true;
    }
}

void Connection::endRead() noexcept {
    releaseHolders();
    if (!m_reading) {
        return;
    }
    m_reading = false;
    try {
        runKept(m_commit, "COMMIT");
    } catch (const AutomationError&) {
        sqlite3_exec(handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    if (m_mapped) {
        sqlite3_exec(handle(), "PRAGMA mmap_size = 0", nullptr, nullptr, nullptr);
        m_mapped = false;
    }
}

void Connection::addHolder(ReadHolder* holder) {
    m_holders.push_back(holder);
}

void Connection::removeHolder(ReadHolder* holder) noexcept {
    std::erase(m_holders, holder);
}

void Connection::releaseHolders() noexcept {
    for (ReadHolder* holder : m_holders) {
        holder->releaseRead();
    }
}

QString quotedName(const QString& name) {
    return u'"' + QString(name).replace(u'"', u"\"\""_qs) + u'"';
}

} // namespace yrw::dao
