#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/Journal.h"
#include "platform/dao/sqlite/SqliteDatabase.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace yrw::dao {

namespace {

[[noreturn]] void raise(int number, const QString& words, const QString& path) {
    throw AutomationError(number, QStringLiteral("YRW.Workspace"), words.arg(path));
}

void requireDatabaseFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile()) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 is not there."), path);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 cannot be read."), path);
    }
    if (file.read(16) != QByteArray("SQLite format 3\0", 16)) {
        raise(kErrorNotADatabase,
              QStringLiteral("%1 is not a database. Restore it from a copy or move it away."),
              path);
    }
}

} // namespace

SqliteWorkspace::SqliteWorkspace(const EngineServices& services, QString name)
    : m_services(services), m_name(std::move(name)) {}

SqliteWorkspace::~SqliteWorkspace() = default;

void SqliteWorkspace::requireOpen() const {
    if (!m_open) {
        throw AutomationError(kErrorObjectClosed, QStringLiteral("YRW.Workspace"),
                              QStringLiteral("The workspace is closed."));
    }
}

std::unique_ptr<Connection> SqliteWorkspace::connect(const QString& file,
                                                     Connection::Access access) const {
    auto connection = std::make_unique<Connection>(file, access, m_services.clock);
    // Opening reads nothing; this does, and finds what is no database, locked or out of reach.
    static_cast<void>(connection->scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema")));
    return connection;
}

std::unique_ptr<Connection> SqliteWorkspace::connectReadOnly(const QString& file) const {
    try {
        return connect(file, Connection::Access::ReadOnly);
    } catch (const AutomationError& error) {
        // A write-ahead journal needs files beside the database. Where they cannot be made nobody
        // can be writing either.
        const bool cannotJoin =
            error.number() == kErrorCannotOpenDatabase || error.number() == kErrorReadOnly;
        if (!cannotJoin || !hasWriteAheadJournal(file) || mayWrite(FileSystem::folderOf(file))) {
            throw;
        }
    }
    return connect(file, Connection::Access::Immutable);
}

Ref<Database> SqliteWorkspace::OpenDatabase(const QString& path, const OpenOptions& options) {
    requireOpen();
    const QString file = m_services.files.resolve(QFileInfo(path).absoluteFilePath());
    requireDatabaseFile(file);
    const bool readOnly =
        options.readOnly || !mayWrite(file) || !mayWrite(FileSystem::folderOf(file));
    auto connection =
        readOnly ? connectReadOnly(file) : connect(file, Connection::Access::ReadWrite);
    if (!readOnly) {
        const MountTest system;
        const MountTest& mounts = m_services.mounts != nullptr ? *m_services.mounts : system;
        const bool network = mounts.isNetwork(file);
        settleJournal(*connection, file, network);
        if (!network) {
            connection->allowMapping();
        }
        connection->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    }
    if (options.exclusive) {
        takeAlone(*connection);
    }
    return keep(std::move(connection), file, readOnly);
}

void SqliteWorkspace::takeAlone(Connection& connection) {
    static_cast<void>(connection.scalar(QStringLiteral("PRAGMA locking_mode = EXCLUSIVE")));
    connection.execute(QStringLiteral("BEGIN EXCLUSIVE"));
    connection.execute(QStringLiteral("COMMIT"));
}

Ref<Database> SqliteWorkspace::keep(std::unique_ptr<Connection> connection, const QString& file,
                                    bool readOnly) {
    auto* database =
        new SqliteDatabase(Ref<SqliteWorkspace>(this), std::move(connection), file, readOnly);
    m_databases.push_back(database);
    return Ref<Database>(database);
}

Ref<Database> SqliteWorkspace::CreateDatabase(const QString& path) {
    requireOpen();
    const QString file = m_services.files.resolve(QFileInfo(path).absoluteFilePath());
    if (QFileInfo::exists(file)) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 is there already."), file);
    }
    auto connection =
        std::make_unique<Connection>(file, Connection::Access::Create, m_services.clock);
    connection->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    // Writes the first page, so that the file is a database from the start.
    connection->execute(QStringLiteral("PRAGMA user_version = 0"));
    return keep(std::move(connection), file, false);
}

void SqliteWorkspace::Close() {
    m_open = false;
    const std::vector<SqliteDatabase*> open = m_databases;
    const Ref<SqliteWorkspace> self(this);
    for (SqliteDatabase* database : open) {
        database->Close();
    }
}

void SqliteWorkspace::removeDatabase(SqliteDatabase* database) noexcept {
    std::erase(m_databases, database);
}

Ref<Workspace> createWorkspace(const EngineServices& services, const QString& name) {
    return Ref<Workspace>(new SqliteWorkspace(services, name));
}

} // namespace yrw::dao
