#include "platform/dao/Connection.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/LockWatch.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Database");

bool isInLoop() {
    return QCoreApplication::instance() != nullptr && QThread::currentThread()->loopLevel() > 0;
}

[[noreturn]] void raise(int number, const QString& description) {
    throw AutomationError(number, kSource, description);
}

} // namespace

Cursor::~Cursor() = default;
LockWatch::~LockWatch() = default;
ReadHolder::~ReadHolder() = default;
Connection::~Connection() = default;

void Cursor::run() {
    while (step()) {
    }
}

Connection::Connection(Clock& clock) : m_clock(clock), m_turn(std::make_unique<QObject>()) {}

void Connection::close() {
    const std::vector<ReadHolder*> holders = std::move(m_holders);
    m_holders.clear();
    for (ReadHolder* holder : holders) {
        holder->close();
    }
    endRead();
    m_kept.clear();
    m_isOpen = false;
}

void Connection::requireOpen() const {
    if (!m_isOpen) {
        raise(kErrorObjectClosed, QStringLiteral("The database is closed."));
    }
}

Cursor& Connection::kept(const QString& sql, SqlOrigin origin) {
    constexpr size_t kMost = 32;
    const auto found = std::find_if(m_kept.begin(), m_kept.end(),
                                    [&sql](const auto& entry) { return entry.first == sql; });
    if (found != m_kept.end()) {
        m_kept.splice(m_kept.begin(), m_kept, found);
    } else {
        m_kept.emplace_front(sql, prepare(sql, origin));
    }
    if (m_kept.size() > kMost) {
        m_kept.pop_back();
    }
    m_kept.front().second->reset();
    return *m_kept.front().second;
}

void Connection::execute(const QString& sql) const {
    prepare(sql)->run();
}

QVariant Connection::scalar(const QString& sql) const {
    const auto statement = prepare(sql);
    return statement->step() ? statement->value(0, std::nullopt) : QVariant();
}

const Connection::Known& Connection::known(const QString& name) {
    const std::pair<qint64, qint64> at{schemaState(), dataVersion()};
    if (at != m_knownAt) {
        m_known.clear();
        m_knownAt = at;
    }
    const QString key = name.toLower();
    const auto entry = m_known.find(key);
    if (entry != m_known.end()) {
        return entry->second;
    }
    Known found;
    found.source = schema().source(name);
    if (!found.source->isTable) {
        found.stored = schema().storedQuery(name);
    }
    return m_known[key] = std::move(found);
}

void Connection::tableChanged(const QString& table) {
    if (table.compare(u"tblQueries", Qt::CaseInsensitive) == 0) {
        m_known.clear();
    }
}

void Connection::runScript(const QString& script) {
    Writing writing(*this);
    m_known.clear();
    execScript(script);
    writing.commit();
}

void Connection::begin() {
    // Whoever watches a wait may close the database meanwhile.
    const auto self = shared_from_this();
    if (m_depth == 0) {
        endRead();
        startWrite();
        requireOpen();
    } else {
        requireLiveTransaction();
        kept(QStringLiteral("SAVEPOINT yrw%1").arg(m_depth)).run();
    }
    ++m_depth;
}

void Connection::requireLiveTransaction() const {
    requireOpen();
    if (!isTransactionLive()) {
        raise(kErrorDatabaseEngine, QStringLiteral("The transaction was given up after an earlier "
                                                   "failure; nothing of it was stored."));
    }
}

void Connection::commit() {
    requireLiveTransaction();
    if (m_depth == 1) {
        beforeCommit();
        releaseHolders();
        kept(QStringLiteral("COMMIT")).run();
    } else {
        kept(QStringLiteral("RELEASE yrw%1").arg(m_depth - 1)).run();
    }
    --m_depth;
}

void Connection::rollback() {
    const int level = --m_depth;
    if (!m_isOpen || !isTransactionLive()) {
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
        readBegins();
        return false;
    }
    if (m_reading) {
        return true;
    }
    readBegins();
    kept(QStringLiteral("BEGIN")).run();
    m_reading = true;
    QMetaObject::invokeMethod(
        m_turn.get(), [this] { endRead(); }, Qt::QueuedConnection);
    return true;
}

void Connection::endRead() noexcept {
    releaseHolders();
    if (!m_reading) {
        return;
    }
    m_reading = false;
    try {
        kept(QStringLiteral("COMMIT")).run();
    } catch (...) { // NOLINT(bugprone-empty-catch): `readEnded` gives it up
    }
    readEnded();
}

void Connection::removeHolder(ReadHolder* holder) noexcept {
    std::erase(m_holders, holder);
}

void Connection::releaseHolders() noexcept {
    for (ReadHolder* holder : m_holders) {
        holder->releaseRead();
    }
}

void Connection::dropStatements() noexcept {
    for (ReadHolder* holder : m_holders) {
        holder->dropStatements();
    }
    m_kept.clear();
}

Writing::Writing(Connection& connection) : m_connection(connection.shared_from_this()) {
    connection.begin();
}

Writing::~Writing() {
    if (m_done) {
        return;
    }
    try {
        m_connection->rollback();
    } catch (...) { // NOLINT(bugprone-empty-catch): a lost connection has rolled back by itself
    }
}

void Writing::commit() {
    m_connection->commit();
    m_done = true;
}

} // namespace yrw::dao
