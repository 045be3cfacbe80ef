#pragma once

#include "platform/dao/Cursor.h"
#include "platform/dao/Schema.h"

#include <QObject>

#include <list>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace yrw {
class Clock;
class Counted;
template <class T>
class Ref;
} // namespace yrw

namespace yrw::dao {

class LockWatch;
class OnlineBackup;
class TextIndex;
enum class ExistingCopy;
struct SalvagedTable;
struct TextIndexNames;

/// Something that holds a statement open on a connection while it reads, and can let go of it.
class ReadHolder {
public:
    virtual ~ReadHolder();
    /// Lets go of every active statement, keeping what it needs to go on later. Never throws; what
    /// could not be kept is reported by the next call that needs it.
    virtual void releaseRead() noexcept = 0;
    /// Gives every statement up, keeping what it needs to make them again: the connection is about
    /// to open its database anew. Never throws.
    virtual void dropStatements() noexcept = 0;
    /// Gives everything up for good: the connection is closing.
    virtual void close() noexcept = 0;
};

/// One connection to an engine. What every engine does alike is here: the depth of transactions,
/// the read transaction of a turn, statements that are kept, what is known of the sources of rows.
/// An engine adds its statements, its schema, its errors and how it notices what others do.
///
/// Lifetime: held in shared pointers; `close` ends everything that reads through it, and calls
/// raise `kErrorObjectClosed` afterwards. Thread: the user-interface thread.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    /// A source of rows by its name, with the stored query behind it.
    struct Known {
        std::shared_ptr<const Source> source;
        std::optional<StoredQuery> stored;
    };

    explicit Connection(Clock& clock);
    virtual ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] Clock& clock() const noexcept { return m_clock; }
    [[nodiscard]] bool isOpen() const noexcept { return m_isOpen; }
    virtual void close();
    void requireOpen() const;

    /// Full path of the database.
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual bool isReadOnly() const = 0;
    /// False once what is written here is seen by nobody else.
    [[nodiscard]] virtual bool isInPlace() const = 0;

    // Statements.
    /// Prepares exactly one statement; raises when the text is wrong, holds more than one, or asks
    /// for more than its origin may.
    [[nodiscard]] virtual std::unique_ptr<Cursor>
    prepare(const QString& sql, SqlOrigin origin = SqlOrigin::Own) const = 0;
    /// A statement kept prepared from one use to the next; for work that steps it to its end at
    /// once. The reference holds until the next call.
    [[nodiscard]] Cursor& kept(const QString& sql, SqlOrigin origin = SqlOrigin::Own);
    /// Runs one statement that returns nothing.
    void execute(const QString& sql) const;
    /// First column of the first row; Null when there is none.
    [[nodiscard]] QVariant scalar(const QString& sql) const;
    /// Rows that the last statement wrote, and the key of the row that was inserted last.
    [[nodiscard]] virtual qint64 changes() const noexcept = 0;
    [[nodiscard]] virtual qint64 lastKey() const noexcept = 0;
    /// What stands behind a table's name to have it read by an index; nothing where the engine
    /// chooses for itself.
    [[nodiscard]] virtual QString indexHint(const QString& index) const = 0;

    // Schema.
    [[nodiscard]] virtual const Schema& schema() const = 0;
    /// A source and its stored query, asked of the database once until that is changed. Raises
    /// `kErrorNotInCollection`.
    [[nodiscard]] const Known& known(const QString& name);
    /// Forgets what is known when a change of a table's rows may have altered it.
    void tableChanged(const QString& table);
    /// A number that changes whenever another connection has written; seen from one turn of the
    /// event loop to the next.
    [[nodiscard]] virtual qint64 dataVersion() = 0;
    /// Runs statements that are separated by ';', within a transaction.
    void runScript(const QString& script);

    // Locks; see `Database`.
    virtual void setLockWatch(LockWatch* watch) = 0;
    /// Sets how many milliseconds are waited for a lock; returns what was set before.
    virtual int setLockPatience(int milliseconds) = 0;
    /// How often a lock outlasted what was waited.
    [[nodiscard]] virtual qint64 locksMet() const = 0;

    // Write transactions; nested ones are savepoints. See `Writing`.
    void begin();
    void commit();
    void rollback();

    // Reading. In a running event loop the first read opens one read transaction that ends when
    // control returns to that loop; elsewhere every read stands alone.
    /// Call before a statement reads. True when an active statement may be kept after the call.
    bool beginRead();
    void endRead() noexcept;
    /// Many rows are going to be read.
    virtual void expectLongRead() noexcept = 0;
    void addHolder(ReadHolder* holder) { m_holders.push_back(holder); }
    void removeHolder(ReadHolder* holder) noexcept;

    // What each engine does in its own way; see the headers of the same names. The keeper keeps the
    // connection open.
    [[nodiscard]] virtual std::unique_ptr<TextIndex> textIndex(const Ref<Counted>& keeper,
                                                               const TextIndexNames& names) = 0;
    [[nodiscard]] virtual std::unique_ptr<OnlineBackup> backup(const QString& path,
                                                               ExistingCopy existing) const = 0;
    [[nodiscard]] virtual SalvagedTable salvage(const QString& damaged, const QString& table,
                                                const QStringList& columns) = 0;

protected:
    /// Begins a write transaction at once. Waits for others, and may handle events meanwhile.
    virtual void startWrite() = 0;
    /// Raises what makes a commit useless.
    virtual void beforeCommit() const = 0;
    /// False when the engine rolled a transaction back by itself.
    [[nodiscard]] virtual bool isTransactionLive() const = 0;
    /// Called before the first read of a turn, and after the last; a transaction that is still open
    /// then is given up.
    virtual void readBegins() = 0;
    virtual void readEnded() noexcept = 0;
    virtual void execScript(const QString& script) = 0;
    /// Changes with the schema.
    [[nodiscard]] virtual qint64 schemaState() = 0;

    [[nodiscard]] bool isReading() const noexcept { return m_reading; }
    /// Ends a read transaction whose event loop was left before it could end it.
    void endAbandonedRead() noexcept;
    /// Gives up every statement that can be made again.
    void dropStatements() noexcept;

private:
    void releaseHolders() noexcept;
    void requireLiveTransaction() const;

    Clock& m_clock;
    std::unique_ptr<QObject> m_turn; ///< receives the call at the end of a turn
    std::vector<ReadHolder*> m_holders;
    std::list<std::pair<QString, std::unique_ptr<Cursor>>> m_kept; ///< used last comes first
    std::map<QString, Known> m_known;                              ///< by name in lower case
    std::pair<qint64, qint64> m_knownAt;                           ///< states of schema and data
    int m_depth = 0;
    bool m_reading = false;
    bool m_isOpen = true;
};

/// One write transaction of a connection; rolls back at its end unless committed.
class Writing {
public:
    explicit Writing(Connection& connection);
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;
    /// Never throws.
    ~Writing();
    void commit();

private:
    std::shared_ptr<Connection> m_connection;
    bool m_done = false;
};

} // namespace yrw::dao
