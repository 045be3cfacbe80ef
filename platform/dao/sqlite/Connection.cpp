#include "platform/dao/sqlite/Connection.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/ReaderFiles.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QThread>
#include <QUrl>

#include <algorithm>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

void tellNow(sqlite3_context* context, int, sqlite3_value**) {
    const auto* clock = static_cast<Clock*>(sqlite3_user_data(context));
    const QByteArray text = dateToText(clock->now()).toUtf8();
    sqlite3_result_text(context, text.constData(), int(text.size()), SQLITE_TRANSIENT);
}

int openFlags(Connection::Access access) {
    switch (access) {
    case Connection::Access::ReadWrite:
        return SQLITE_OPEN_READWRITE;
    case Connection::Access::Reader:
    case Connection::Access::Immutable:
        break;
    }
    return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
}

QByteArray openName(const QString& path, Connection::Access access) {
    const QByteArray place =
        QByteArrayLiteral("file:") + QUrl::toPercentEncoding(path, QByteArrayLiteral("/"));
    switch (access) {
    case Connection::Access::Reader:
        return place + QByteArrayLiteral("?readonly_shm=1");
    case Connection::Access::Immutable:
        return place + QByteArrayLiteral("?immutable=1");
    default:
        return path.toUtf8();
    }
}

} // namespace

ReadHolder::~ReadHolder() = default;

void Connection::Closer::operator()(sqlite3* connection) const noexcept {
    sqlite3_close_v2(connection);
}

Connection::Connection(const QString& path, Access access, Clock& clock)
    : m_clock(clock), m_path(path), m_waits(clock), m_turn(std::make_unique<QObject>()) {
    open(access);
}

void Connection::open(Access access) {
    sqlite3* handle = nullptr;
    const bool reads = access == Access::Reader || access == Access::Immutable;
    const int code = sqlite3_open_v2(openName(m_path, access).constData(), &handle,
                                     openFlags(access) | SQLITE_OPEN_NOMUTEX,
                                     reads ? readerFileLayer() : nullptr);
    std::unique_ptr<sqlite3, Closer> opened(handle);
    if (code != SQLITE_OK) {
        raiseEngineError(handle, code);
    }
    m_place = placeOf(m_path);
    int isMoved = 0;
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_HAS_MOVED, &isMoved);
    if (isMoved != 0) {
        throw AutomationError(
            kErrorCannotOpenDatabase, QStringLiteral("YRW.Workspace"),
            QStringLiteral("%1 was replaced while it was opened. Open it again.").arg(m_path));
    }
    sqlite3_extended_result_codes(handle, 1);
    // Pages for some thousand notes; taken only as they are read.
    sqlite3_exec(handle, "PRAGMA cache_size = -16384", nullptr, nullptr, nullptr);
    // Moving the journal's pages home costs three syncs; the journal grows to 16 MB before it is
    // due.
    sqlite3_wal_autocheckpoint(handle, 4000);
    m_waits.serve(handle);
    m_limits.apply(handle);
    sqlite3_create_function_v2(handle, "Now", 0, SQLITE_UTF8, &m_clock, &tellNow, nullptr, nullptr,
                               nullptr);
    m_handle = std::move(opened);
}

Connection::~Connection() {
    if (!isInPlace()) {
        // The journal would go home into a file that nobody sees, and what was put there since may
        // be in use by others.
        sqlite3_db_config(handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
}

bool Connection::isInPlace() const {
    if (!m_place) {
        return true;
    }
    const std::optional<FilePlace> now = placeOf(m_path);
    return now ? now->isSameOpenFile(*m_place) : !isGone(m_path);
}

void Connection::requireInPlace() const {
    if (isInPlace()) {
        return;
    }
    throw AutomationError(
        kErrorFileReplaced, QStringLiteral("YRW.Database"),
        (isGone(m_path)
             ? QStringLiteral("%1 is not there any more: somebody deleted or renamed it while it "
                              "was open. Nothing was written.")
             : QStringLiteral("%1 is another file now: somebody put it there while the former one "
                              "was open. Nothing was written."))
            .arg(m_path));
}

void Connection::watchForJournal() {
    m_followsJournal = true;
    if (hasFullJournalBeside(m_path)) {
        m_foreignJournal = placeOf(m_path + u"-wal");
    }
}

/// Others may begin to write at any time, and then the file alone does not tell what is committed.
void Connection::followJournal() {
    if (!hasJournalBeside(m_path)) {
        return;
    }
    const std::optional<FilePlace> journal = placeOf(m_path + u"-wal");
    if (journal && m_foreignJournal && journal->isSameOpenFile(*m_foreignJournal)) {
        return;
    }
    for (ReadHolder* holder : m_holders) {
        holder->dropStatements();
    }
    m_kept.clear();
    m_beginRead = Statement();
    m_commit = Statement();
    open(Access::Reader);
    m_followsJournal = false;
}

void Connection::execute(const QString& sql) const {
    Statement(handle(), sql).run();
}

Statement& Connection::kept(const QString& sql, SqlOrigin origin) {
    constexpr size_t kMost = 32;
    const auto found = std::find_if(m_kept.begin(), m_kept.end(),
                                    [&sql](const auto& entry) { return entry.first == sql; });
    if (found != m_kept.end()) {
        m_kept.splice(m_kept.begin(), m_kept, found);
    } else {
        m_kept.emplace_front(sql, Statement(handle(), sql, origin));
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
        requireInPlace();
        beginWrite();
    } else {
        requireLiveTransaction();
        kept(QStringLiteral("SAVEPOINT yrw%1").arg(m_depth)).run();
    }
    ++m_depth;
}

void Connection::beginWrite() {
    if (m_watch == nullptr || m_waits.isBrief()) {
        runKept(m_beginWrite, "BEGIN IMMEDIATE");
        return;
    }
    // Between two tries nothing is under way here, so that whoever watches may handle events. The
    // commit could not wait like that; without a write-ahead journal its lock is taken now.
    const bool isAlone = scalar(QStringLiteral("PRAGMA journal_mode")).toString() != u"wal";
    const int before = m_waits.setPatience(0);
    const auto after = qScopeGuard([this, before] {
        m_waits.setPatience(before);
        if (m_watch != nullptr) {
            m_watch->ended();
        }
    });
    const qint64 begun = m_clock.monotonicMs();
    for (;;) {
        endRead(); // of what was painted meanwhile
        try {
            runKept(isAlone ? m_beginAlone : m_beginWrite,
                    isAlone ? "BEGIN EXCLUSIVE" : "BEGIN IMMEDIATE");
            return;
        } catch (const AutomationError& error) {
            if (error.number() != kErrorLocked || m_watch == nullptr ||
                !m_watch->goOn(m_clock.monotonicMs() - begun)) {
                throw;
            }
        }
    }
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
        requireInPlace();
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
        if (m_followsJournal) {
            followJournal();
        }
        return false;
    }
    if (m_reading) {
        return true;
    }
    if (m_followsJournal) {
        followJournal();
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
