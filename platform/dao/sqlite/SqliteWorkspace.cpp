#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/Journal.h"
#include "platform/dao/sqlite/SqliteDatabase.h"
#include "platform/files/FolderLock.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace yrw::dao {

namespace {

[[noreturn]] void raise(int number, const QString& words, const QString& path) {
    throw AutomationError(number, QStringLiteral("YRW.Workspace"), words.arg(path));
}

/// Asks the file system alone. Reading the file past the engine would, at closing, give up the
/// locks that this process may have on it.
void requireDatabaseFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile()) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 is not there."), path);
    }
    if (!mayRead(path)) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 cannot be read."), path);
    }
    if (info.size() == 0) {
        raise(kErrorNotADatabase,
              QStringLiteral("%1 is not a database. Restore it from a copy or move it away."),
              path);
    }
}

/// Makes an empty file with the rights that the user's mask leaves and its folder's group.
void makeFile(const QString& path) {
    constexpr mode_t kEverybody = 0666;
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kEverybody);
    if (file < 0) {
        raise(kErrorCannotOpenDatabase,
              errno == EEXIST ? QStringLiteral("%1 is there already.")
                              : QStringLiteral("%1 could not be made."),
              path);
    }
    ::close(file);
    FileSystem::takeGroupOfFolder(path);
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

/// Where others write, what they have committed lies in the file and its journal together, and both
/// can be read under their locks. Where there is no journal the file alone is read; taking part
/// would mean to make one.
std::unique_ptr<Connection> SqliteWorkspace::connectReader(const QString& file) const {
    constexpr int kTries = 3;
    const bool isForeign = isAtForeignPlace(file, m_services.clock);
    for (int i = 1;; ++i) {
        auto alone =
            std::make_unique<Connection>(file, Connection::Access::Immutable, m_services.clock);
        const bool isWal = hasWriteAheadJournal(*alone);
        if (isWal && (isForeign || !hasJournalBeside(file))) {
            alone->watchForJournal();
            static_cast<void>(alone->scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema")));
            return alone;
        }
        alone.reset();
        try {
            return connect(file, Connection::Access::Reader);
        } catch (const AutomationError& error) {
            const bool cannotJoin = isWal && (error.number() == kErrorCannotOpenDatabase ||
                                              error.number() == kErrorReadOnly);
            if (cannotJoin && i < kTries) {
                continue; // the last writer may just have finished
            }
            if (cannotJoin) {
                raise(kErrorCannotOpenDatabase,
                      QStringLiteral("%1 has changes beside it that a program left there when it "
                                     "was ended. Somebody who may write to it must open it once."),
                      file);
            }
            throw;
        }
    }
}

std::unique_ptr<Connection> SqliteWorkspace::connectWriter(const QString& file,
                                                           bool& isLocal) const {
    const MountTest system;
    const MountTest& mounts = m_services.mounts != nullptr ? *m_services.mounts : system;
    const bool network = mounts.isNetwork(file);
    isLocal = !network;
    std::optional<FolderLock> lock;
    const auto hasForeignJournal = [&] {
        return !network && hasFullJournalBeside(file) && isAtForeignPlace(file, m_services.clock);
    };
    if (hasForeignJournal()) {
        // Another program may be about to settle the same, and the journal is its own then.
        lock.emplace(FileSystem::folderOf(file));
        if (!lock->isHeld()) {
            raise(kErrorLocked,
                  QStringLiteral("%1 is just being taken into use by another program. Try again "
                                 "when that program has finished."),
                  file);
        }
        if (hasForeignJournal()) {
            moveJournalAside(file);
        }
    }
    auto connection = connect(file, Connection::Access::ReadWrite);
    settleJournal(*connection, file, network);
    if (!network) {
        connection->allowMapping();
    }
    connection->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    return connection;
}

Ref<Database> SqliteWorkspace::OpenDatabase(const QString& path, const OpenOptions& options) {
    requireOpen();
    const QString file = m_services.files.resolve(QFileInfo(path).absoluteFilePath());
    requireDatabaseFile(file);
    const bool readOnly =
        options.readOnly || !mayWrite(file) || !mayWrite(FileSystem::folderOf(file));
    bool isLocal = false;
    auto connection = readOnly ? connectReader(file) : connectWriter(file, isLocal);
    if (options.exclusive) {
        takeAlone(*connection);
    }
    Ref<Database> database = keep(std::move(connection), file, readOnly);
    if (isLocal) {
        m_databases.back()->takePlaceBeforeWriting();
    }
    return database;
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
    makeFile(file);
    auto connection =
        std::make_unique<Connection>(file, Connection::Access::ReadWrite, m_services.clock);
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
