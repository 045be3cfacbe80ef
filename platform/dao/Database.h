#pragma once

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/component/Counted.h"
#include "platform/dao/ConflictError.h"
#include "platform/dao/LockWatch.h"
#include "platform/dao/MountTest.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/Types.h"
#include "platform/files/FileSystem.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace yrw::dao {

class DamagedFile;
class Engine;
class OnlineBackup;
class TextIndex;
class Writing;
enum class ExistingCopy;
struct Damage;
struct SalvagedTable;
struct TextIndexNames;

/// An open database.
///
/// Stored queries are the file's views, and the rows of its table `tblQueries`: `Name`, `Kind`
/// ("view", "select" or "action"), `BaseTable`, `SQL` in the engine's language with parameters
/// written `:Name`, and `Parameters`, a list "Name Type, Name Type" in order. `Now()` in such a
/// text is the clock's local time. Rows of a query can be changed when `BaseTable` names a table
/// whose key is among the query's columns; a view that should be changeable has a row of kind
/// "view". A file without `tblQueries` simply has no more than its views.
///
/// Reading: in a running event loop the reads of one turn see one state of the database and share
/// one read transaction, which ends when control returns to the loop. Outside a loop every read
/// stands alone, but a forward-only recordset holds its read transaction until its end, its
/// closing, or the next write.
///
/// What the file's own text may do (queries, views, triggers, defaults) is limited to reading and
/// writing the rows of that file, with functions of a fixed list; a step of it that does not come
/// to an end is stopped. Both raise `kErrorDatabaseEngine`.
///
/// Several programs: a call that finds the database locked waits up to 5 seconds (see `LockWatch`
/// and `BriefWaits`) and then raises `kErrorLocked`, whose description names the file and, where
/// the system tells, the process. A write, when another file or none has come to lie at the path,
/// raises `kErrorFileReplaced`; nothing is written then, nor at closing. Any
/// call that reaches the file may raise that, `kErrorDiskFull`, `kErrorNotADatabase` (damage) or
/// `kErrorDatabaseEngine`; nothing stays open behind an error.
///
/// Lifetime: counted; closed by `Close`, by its workspace, or with the last reference to it and to
/// its recordsets, which keep it. It keeps its workspace. Closing closes its recordsets. Calls
/// other than `Close`, `Name` and `isOpen` raise `kErrorObjectClosed` afterwards. Thread: the
/// user-interface thread.
class Database final : public virtual Counted {
public:
    Database(Ref<Counted> keeper, std::shared_ptr<Connection> connection);
    ~Database() override;

    /// Full path of the database file.
    [[nodiscard]] QString Name() const;
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool isReadOnly() const;
    /// True once another file, or none, lies at the path: what this one shows is not what others
    /// see. Asks the file system.
    [[nodiscard]] bool isReplaced() const;
    void Close();

    /// Opens rows from a table name, the name of a stored query, or SQL text.
    /// Values between double quotes in SQL text are text literals; see Condition.h.
    /// Raises `kErrorNotInCollection` for an unknown table or query, `kErrorBadCondition` for text
    /// outside the accepted grammar, `kErrorReadOnly` never: a recordset of a read-only database
    /// simply is not updatable.
    [[nodiscard]] Ref<Recordset> OpenRecordset(const QString& source,
                                               RecordsetType type = RecordsetType::Default,
                                               int options = kNoOptions);
    /// Opens a stored query with parameters, which are matched by name in any case. A parameter
    /// that the query has and the table lacks is Null; one that the query lacks is an error
    /// (`kErrorNotInCollection`).
    [[nodiscard]] Ref<Recordset> OpenQuery(const QString& name, const Parameters& parameters,
                                           RecordsetType type = RecordsetType::Default,
                                           int options = kNoOptions);
    /// Runs a stored action query in one immediate transaction; returns the number of rows.
    /// Raises `kErrorNotInCollection` for an unknown name or parameter and for a query that is no
    /// action.
    qint64 ExecuteQuery(const QString& name, const Parameters& parameters);
    /// Deletes the rows of a table whose field equals a value; returns the number of rows.
    /// Raises `kErrorNotInCollection` for an unknown table or field.
    qint64 DeleteRows(const QString& table, const QString& field, const QVariant& value);
    /// Runs a creation or upgrade script: statements of the engine's own language, separated by
    /// ';', in one transaction: it is done whole or not at all. For the tools that make databases.
    void RunScript(const QString& script);

    [[nodiscard]] bool hasTable(const QString& name) const;
    [[nodiscard]] bool hasField(const QString& table, const QString& field) const;
    /// Number of the schema that the file carries; 0 when none was set.
    [[nodiscard]] int SchemaVersion() const;
    void setSchemaVersion(int version);
    /// The objects of the file, without those that the engine keeps for itself.
    [[nodiscard]] std::vector<FileObject> objects() const;
    /// Runs the engine's integrity check.
    [[nodiscard]] Damage CheckIntegrity();
    /// Makes every index anew from its rows.
    void rebuildIndexes();
    /// Copies the whole database, as it stands committed, into a new file with mode and group of
    /// the database's own. The file appears when it is complete and on the disk; nothing is
    /// replaced, and no link followed. Within a transaction the copy is of what was there before
    /// it. Raises `kErrorCannotOpenDatabase` when the name is taken, `kErrorDiskFull`.
    void CopyTo(const QString& path);
    /// Begins to copy this database into a file. A link of that name is never followed. Raises
    /// `kErrorCannotOpenDatabase` when the name is taken and kept, or is a folder or that of the
    /// database itself or of a file beside it, `kErrorDiskFull` when nothing can be written there.
    [[nodiscard]] std::unique_ptr<OnlineBackup> beginBackup(const QString& path,
                                                            ExistingCopy existing) const;
    /// The index of texts of that name. It need not be there yet: see `TextIndex::repair`.
    [[nodiscard]] std::unique_ptr<TextIndex> textIndex(const TextIndexNames& names);
    /// Copies the rows of a damaged file's table that can be read into the table of that name,
    /// which has all its columns; rows of the same key here are replaced. Call inside a
    /// transaction. Raises what writing raises, and nothing for what is damaged.
    [[nodiscard]] SalvagedTable salvage(const DamagedFile& file, const QString& table);

    /// Sets who is asked while a write waits; nothing for none. With one, reads wait up to a second
    /// only. Not owned.
    void setLockWatch(LockWatch* watch);

    /// The connection, for the data layer; raises `kErrorObjectClosed` after closing.
    [[nodiscard]] Connection& connection() const;

private:
    Ref<Counted> m_keeper; ///< the workspace
    std::shared_ptr<Connection> m_connection;
};

/// One immediate write transaction on a database; rolls back at its end unless committed. A write
/// outside of one is its own. One within another may be rolled back by itself; what it did is
/// stored when the outermost is committed.
///
/// Never keep one across a turn of the event loop.
class Transaction {
public:
    explicit Transaction(Database& database);
    explicit Transaction(Ref<Database>&&) = delete;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// Rolls back when not committed; never throws.
    ~Transaction();
    /// A commit that fails leaves the transaction to be rolled back.
    void commit();

private:
    Ref<Database> m_database;
    std::unique_ptr<Writing> m_writing;
};

/// While it lives, a call that finds the database locked waits for 50 ms only, and one that follows
/// in vain within half a second not at all: for what must not freeze a window and can be done
/// later. Nothing for no database.
class BriefWaits {
public:
    explicit BriefWaits(Ref<Database> database);
    ~BriefWaits();
    /// True when a call found the database locked for longer.
    [[nodiscard]] bool wereInVain() const;
    BriefWaits(const BriefWaits&) = delete;
    BriefWaits& operator=(const BriefWaits&) = delete;

private:
    Ref<Database> m_database;
    int m_before = 0;
    qint64 m_locksMet = 0;
};

/// How a database is opened.
struct OpenOptions {
    bool readOnly = false; ///< a file or folder that cannot be written opens read-only by itself
};

/// Opens databases and closes all that was opened through it.
///
/// Lifetime: counted. `Close` closes every database opened through it, twice without an error.
/// Thread: the user-interface thread.
class Workspace final : public virtual Counted {
public:
    explicit Workspace(std::unique_ptr<Engine> engine);
    ~Workspace() override;
    [[nodiscard]] bool isOpen() const;
    /// Opens a database file. Raises `kErrorCannotOpenDatabase` when it is missing or cannot be
    /// opened, `kErrorNotADatabase` when it is none or damaged, `kErrorLocked` when it stayed
    /// locked; the description names the file. A file on a local disk is turned to the write-ahead
    /// journal; one that was ever opened over a network mount keeps the rollback journal for
    /// everybody, and `kErrorLocked` is raised while others keep it from being turned.
    /// A file on a local disk carries its own place in the table `tblFilePlace`; when it was put
    /// where it is by renaming, the journal of the file before it is moved aside ("-wal.old").
    /// Who may only read sees what is committed and makes, changes and locks out nothing.
    [[nodiscard]] Ref<Database> OpenDatabase(const QString& path, const OpenOptions& options = {});
    /// Makes an empty database file; raises `kErrorCannotOpenDatabase` when the file is there.
    [[nodiscard]] Ref<Database> CreateDatabase(const QString& path);
    /// Opens a file that the engine calls damaged; nothing when it does not even tell its tables.
    [[nodiscard]] std::unique_ptr<DamagedFile> openDamaged(const QString& path);
    void Close();

private:
    [[nodiscard]] Ref<Database> keep(std::shared_ptr<Connection> connection);
    void requireOpen() const;

    std::unique_ptr<Engine> m_engine;
    bool m_isOpen = true;
    std::vector<std::weak_ptr<Connection>> m_connections;
};

/// What a workspace needs of the world. All outlive it.
struct EngineServices {
    Clock& clock;
    FileSystem& files;
    const MountTest* mounts = nullptr; ///< nothing asks the system
};

/// Makes a workspace over the embedded engine.
[[nodiscard]] Ref<Workspace> createWorkspace(const EngineServices& services);

} // namespace yrw::dao
