#pragma once

#include "platform/clock/Clock.h"
#include "platform/dao/Database.h"
#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/LockWaits.h"
#include "platform/dao/sqlite/Statement.h"

#include <QObject>

#include <list>
#include <memory>
#include <utility>
#include <vector>

struct sqlite3;

namespace yrw::dao {

/// Something that holds a statement open on a connection while it reads, and can let go of it.
class ReadHolder {
public:
    virtual ~ReadHolder();
    /// Lets go of every active statement, keeping what it needs to go on later. Never throws; what
    /// could not be kept is reported by the next call that needs it.
    virtual void releaseRead() noexcept = 0;
    /// Gives every statement up, keeping what it needs to make them again: the connection is about
    /// to open its file anew. Never throws.
    virtual void dropStatements() noexcept { releaseRead(); }
};

/// One connection to the engine: handle, transactions, and the read transaction of a turn.
///
/// Lifetime: closes the handle at its end; every statement must be gone by then.
/// Thread: the user-interface thread.
class Connection {
public:
    /// A reader makes and changes no file. An immutable one reads the file alone, past a journal
    /// beside it, and takes no locks.
    enum class Access { ReadWrite, Reader, Immutable };

    /// Opens a file and sets up what belongs to a connection, but reads nothing yet.
    Connection(const QString& path, Access access, Clock& clock);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] sqlite3* handle() const noexcept { return m_handle.get(); }
    [[nodiscard]] Clock& clock() const noexcept { return m_clock; }

    /// Runs one statement that returns nothing.
    void execute(const QString& sql) const;
    /// A statement kept prepared from one use to the next; for work that steps it to its end at
    /// once. The reference holds until the next call.
    [[nodiscard]] Statement& kept(const QString& sql, SqlOrigin origin = SqlOrigin::Own);
    /// First column of the first row; Null when there is none.
    [[nodiscard]] QVariant scalar(const QString& sql) const;
    [[nodiscard]] qint64 changes() const noexcept;
    /// Key of the row that was inserted last.
    [[nodiscard]] qint64 lastKey() const noexcept;

    /// False once another file lies at the path, or none, so that nobody else sees what is written.
    [[nodiscard]] bool isInPlace() const;
    /// For an immutable connection: goes on as a reader once a journal appears beside the file. One
    /// that lies there already belongs to another file and is passed over.
    void watchForJournal();
    [[nodiscard]] LockWaits& lockWaits() noexcept { return m_waits; }
    /// Is asked, instead of a plain wait, when a write finds the file locked; nothing for none.
    void setLockWatch(LockWatch* watch) noexcept { m_watch = watch; }

    // Write transactions; nested ones are savepoints. None begins or is committed when the file is
    // not in its place any more: `kErrorFileReplaced`.
    void begin();
    void commit();
    void rollback();
    [[nodiscard]] bool inTransaction() const noexcept { return m_depth > 0; }
    /// Raises when the engine rolled the open transaction back by itself.
    void requireLiveTransaction() const;

    // Reading. In a running event loop the first read opens one read transaction that ends when
    // control returns to that loop; elsewhere every read stands alone.
    /// Call before a statement reads. True when an active statement may be kept after the call.
    bool beginRead();
    void endRead() noexcept;
    /// Allows `mapLongRead`: for a file on a local disk.
    void allowMapping() noexcept { m_mayMap = true; }
    /// Reads the file's pages in place instead of copying each, until the read transaction ends.
    /// For a read of many rows; nothing happens outside a read transaction. No longer than that,
    /// since a failing disk then ends the process where it would otherwise raise an error.
    void mapLongRead() noexcept;
    /// Ends a read transaction whose event loop was left before it could end it.
    void endAbandonedRead() noexcept;
    void addHolder(ReadHolder* holder);
    void removeHolder(ReadHolder* holder) noexcept;

private:
    struct Closer {
        void operator()(sqlite3* connection) const noexcept;
    };
    [[nodiscard]] bool isInLoop() const;
    void releaseHolders() noexcept;
    void open(Access access);
    void followJournal();
    void requireInPlace() const;
    void beginWrite();
    void runKept(Statement& statement, const char* sql) const;

    Clock& m_clock;
    QString m_path;
    SqlLimits m_limits;
    LockWaits m_waits;
    LockWatch* m_watch = nullptr;
    std::unique_ptr<sqlite3, Closer> m_handle;
    std::optional<FilePlace> m_place; ///< of the file that is open
    bool m_followsJournal = false;
    std::optional<FilePlace> m_foreignJournal;
    std::unique_ptr<QObject> m_turn; ///< receives the call at the end of a turn
    std::vector<ReadHolder*> m_holders;
    std::list<std::pair<QString, Statement>> m_kept; ///< used last comes first
    Statement m_beginRead;
    Statement m_beginWrite;
    Statement m_beginAlone;
    Statement m_commit;
    int m_depth = 0;
    bool m_reading = false;
    bool m_mayMap = false;
    bool m_mapped = false;
};

/// A name in the engine's quotes.
[[nodiscard]] QString quotedName(const QString& name);

} // namespace yrw::dao
