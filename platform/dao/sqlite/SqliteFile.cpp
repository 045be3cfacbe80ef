#include "platform/dao/sqlite/SqliteFile.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/ReaderFiles.h"
#include "platform/dao/sqlite/Statement.h"

#include <QUrl>

#include <utility>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

void tellNow(sqlite3_context* context, int, sqlite3_value**) {
    const auto* clock = static_cast<Clock*>(sqlite3_user_data(context));
    const QByteArray text = dateToText(clock->now()).toUtf8();
    sqlite3_result_text(context, text.constData(), int(text.size()), SQLITE_TRANSIENT);
}

int openFlags(SqliteFile::Access access) {
    switch (access) {
    case SqliteFile::Access::ReadWrite:
        return SQLITE_OPEN_READWRITE;
    case SqliteFile::Access::Reader:
    case SqliteFile::Access::Immutable:
        break;
    }
    return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
}

QByteArray openName(const QString& path, SqliteFile::Access access) {
    const QByteArray place =
        QByteArrayLiteral("file:") + QUrl::toPercentEncoding(path, QByteArrayLiteral("/"));
    switch (access) {
    case SqliteFile::Access::Reader:
        return place + QByteArrayLiteral("?readonly_shm=1");
    case SqliteFile::Access::Immutable:
        return place + QByteArrayLiteral("?immutable=1");
    default:
        return path.toUtf8();
    }
}

} // namespace

void SqliteFile::Closer::operator()(sqlite3* connection) const noexcept {
    sqlite3_close_v2(connection);
}

SqliteFile::SqliteFile(const QString& path, Access access, Clock& clock)
    : m_clock(clock), m_path(path), m_waits(clock) {
    open(access);
}

void SqliteFile::open(Access access) {
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

SqliteFile::~SqliteFile() {
    if (!isInPlace()) {
        // The journal would go home into a file that nobody sees, and what was put there since may
        // be in use by others.
        sqlite3_db_config(handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
}

void SqliteFile::execute(const QString& sql) const {
    Statement(handle(), sql).run();
}

QVariant SqliteFile::scalar(const QString& sql) const {
    Statement statement(handle(), sql);
    return statement.step() ? statement.value(0, std::nullopt) : QVariant();
}

bool SqliteFile::isInPlace() const {
    if (!m_place) {
        return true;
    }
    const std::optional<FilePlace> now = placeOf(m_path);
    return now ? now->isSameOpenFile(*m_place) : !isGone(m_path);
}

void SqliteFile::requireInPlace() const {
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

void SqliteFile::watchForJournal() {
    m_watchesJournal = true;
    if (hasFullJournalBeside(m_path)) {
        m_foreignJournal = placeOf(m_path + u"-wal");
    }
}

bool SqliteFile::hasNewJournal() const {
    if (!m_watchesJournal || !hasJournalBeside(m_path)) {
        return false;
    }
    const std::optional<FilePlace> journal = placeOf(m_path + u"-wal");
    return !journal || !m_foreignJournal || !journal->isSameOpenFile(*m_foreignJournal);
}

void SqliteFile::reopenAsReader() {
    open(Access::Reader);
    m_watchesJournal = false;
}

} // namespace yrw::dao
