#include "platform/component/AutomationError.h"
#include "platform/dao/Database.h"
#include "platform/dao/Engine.h"
#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/Journal.h"
#include "platform/dao/sqlite/PlaceRecord.h"
#include "platform/dao/sqlite/SalvagedRows.h"
#include "platform/dao/sqlite/SqliteConnection.h"
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

/// Opens files of the embedded engine.
class SqliteEngine final : public Engine {
public:
    explicit SqliteEngine(const EngineServices& services) : m_services(services) {}

    [[nodiscard]] std::shared_ptr<Connection> open(const QString& path,
                                                   bool readOnly) const override;
    [[nodiscard]] std::shared_ptr<Connection> create(const QString& path) const override;
    [[nodiscard]] std::unique_ptr<DamagedFile> openDamaged(const QString& path) const override {
        return openDamagedFile(path);
    }

private:
    [[nodiscard]] QString resolved(const QString& path) const {
        return m_services.files.resolve(QFileInfo(path).absoluteFilePath());
    }
    [[nodiscard]] std::unique_ptr<SqliteFile> connect(const QString& file,
                                                      SqliteFile::Access access) const;
    [[nodiscard]] std::unique_ptr<SqliteFile> connectReader(const QString& file) const;
    [[nodiscard]] std::unique_ptr<SqliteFile> connectWriter(const QString& file,
                                                            bool isOnNetwork) const;

    EngineServices m_services;
};

std::unique_ptr<SqliteFile> SqliteEngine::connect(const QString& file,
                                                  SqliteFile::Access access) const {
    auto connection = std::make_unique<SqliteFile>(file, access, m_services.clock);
    // Opening reads nothing; this does, and finds what is no database, locked or out of reach.
    static_cast<void>(connection->scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema")));
    return connection;
}

/// Where others write, what they have committed lies in the file and its journal together, and both
/// can be read under their locks. Where there is no journal the file alone is read; taking part
/// would mean to make one.
std::unique_ptr<SqliteFile> SqliteEngine::connectReader(const QString& file) const {
    constexpr int kTries = 3;
    const bool isForeign = isAtForeignPlace(file, m_services.clock);
    for (int i = 1;; ++i) {
        auto alone =
            std::make_unique<SqliteFile>(file, SqliteFile::Access::Immutable, m_services.clock);
        const bool isWal = hasWriteAheadJournal(*alone);
        if (isWal && (isForeign || !hasJournalBeside(file))) {
            alone->watchForJournal();
            static_cast<void>(alone->scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema")));
            return alone;
        }
        alone.reset();
        try {
            return connect(file, SqliteFile::Access::Reader);
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

std::unique_ptr<SqliteFile> SqliteEngine::connectWriter(const QString& file,
                                                        bool isOnNetwork) const {
    std::optional<FolderLock> lock;
    const auto hasForeignJournal = [&] {
        return !isOnNetwork && hasFullJournalBeside(file) &&
               isAtForeignPlace(file, m_services.clock);
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
    auto connection = connect(file, SqliteFile::Access::ReadWrite);
    settleJournal(*connection, isOnNetwork);
    connection->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    return connection;
}

std::shared_ptr<Connection> SqliteEngine::open(const QString& path, bool readOnly) const {
    const QString file = resolved(path);
    requireDatabaseFile(file);
    using Use = SqliteConnection::Use;
    Use use = Use::Reader;
    std::unique_ptr<SqliteFile> opened;
    if (readOnly || !mayWrite(file) || !mayWrite(FileSystem::folderOf(file))) {
        opened = connectReader(file);
    } else {
        const MountTest system;
        const MountTest& mounts = m_services.mounts != nullptr ? *m_services.mounts : system;
        const bool isOnNetwork = mounts.isNetwork(file);
        opened = connectWriter(file, isOnNetwork);
        use = isOnNetwork ? Use::Writer : Use::LocalWriter;
    }
    return std::make_shared<SqliteConnection>(std::move(opened), use);
}

std::shared_ptr<Connection> SqliteEngine::create(const QString& path) const {
    const QString file = resolved(path);
    if (QFileInfo::exists(file)) {
        raise(kErrorCannotOpenDatabase, QStringLiteral("%1 is there already."), file);
    }
    makeFile(file);
    auto made = std::make_unique<SqliteFile>(file, SqliteFile::Access::ReadWrite, m_services.clock);
    made->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    // Writes the first page, so that the file is a database from the start.
    made->execute(QStringLiteral("PRAGMA user_version = 0"));
    return std::make_shared<SqliteConnection>(std::move(made), SqliteConnection::Use::Writer);
}

} // namespace

Ref<Workspace> createWorkspace(const EngineServices& services) {
    return make<Workspace>(std::make_unique<SqliteEngine>(services));
}

} // namespace yrw::dao
