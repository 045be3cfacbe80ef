#pragma once

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/component/Counted.h"
#include "platform/dao/MountTest.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/Types.h"
#include "platform/files/FileSystem.h"

#include <QStringList>

namespace yrw::dao {

/// Raised by `Recordset::Update` when fields were changed by someone else since they were read.
class ConflictError final : public AutomationError {
public:
    ConflictError(const QString& source, const QString& description, ValueList current);
    ~ConflictError() override;
    /// The conflicting fields with the values that stand in the database now.
    [[nodiscard]] const ValueList& current() const noexcept { return m_current; }

private:
    ValueList m_current;
};

/// An open database.
///
/// Lifetime: counted; closed by `Close`, by its workspace, or with its last reference. Closing
/// closes its recordsets. Calls other than `Close`, `Name` and `isOpen` raise
/// `kErrorObjectClosed` afterwards.
/// Thread: the user-interface thread.
class Database : public virtual Counted {
public:
    ~Database() override;

    /// Full path of the database file.
    [[nodiscard]] virtual QString Name() const = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
    [[nodiscard]] virtual bool isReadOnly() const = 0;
    virtual void Close() = 0;

    /// Opens rows from a table name, the name of a stored query, or SQL text.
    /// Values between double quotes in SQL text are text literals; see Condition.h.
    /// Raises `kErrorNotInCollection` for an unknown table or query, `kErrorBadCondition` for text
    /// outside the accepted grammar, `kErrorReadOnly` never: a recordset of a read-only database
    /// simply is not updatable.
    [[nodiscard]] virtual Ref<Recordset> OpenRecordset(const QString& source,
                                                       RecordsetType type = RecordsetType::Default,
                                                       int options = kNoOptions) = 0;
    /// Opens a stored query with parameters, which are matched by name in any case. A parameter
    /// that the query has and the table lacks is Null; one that the query lacks is an error
    /// (`kErrorNotInCollection`).
    [[nodiscard]] virtual Ref<Recordset> OpenQuery(const QString& name,
                                                   const Parameters& parameters,
                                                   RecordsetType type = RecordsetType::Default,
                                                   int options = kNoOptions) = 0;
    /// Runs a stored action query in one immediate transaction; returns the number of rows.
    virtual qint64 ExecuteQuery(const QString& name, const Parameters& parameters) = 0;
    /// Deletes the rows of a table whose field equals a value; returns the number of rows.
    virtual qint64 DeleteRows(const QString& table, const QString& field,
                              const QVariant& value) = 0;
    /// Runs a creation or upgrade script: statements of the engine's own language, separated by
    /// ';', in one transaction. For the tools that make databases.
    virtual void RunScript(const QString& script) = 0;

    [[nodiscard]] virtual QStringList TableNames() const = 0;
    [[nodiscard]] virtual QStringList QueryNames() const = 0;
    [[nodiscard]] virtual bool hasTable(const QString& name) const = 0;
    [[nodiscard]] virtual bool hasField(const QString& table, const QString& field) const = 0;
    /// Number of the schema that the file carries; 0 when none was set.
    [[nodiscard]] virtual int SchemaVersion() const = 0;
    virtual void setSchemaVersion(int version) = 0;
    /// Runs the engine's integrity check; the problems found, none when all is well.
    [[nodiscard]] virtual QStringList CheckIntegrity() = 0;
    /// A number that changes whenever another connection has written.
    [[nodiscard]] virtual qint64 DataVersion() = 0;
    /// Copies the whole database, as it stands committed, into a new file.
    virtual void CopyTo(const QString& path) = 0;

    /// Ends the read transaction that painting opened, if any. The data layer calls it by itself
    /// when control returns to the event loop.
    virtual void EndReadTransaction() = 0;

    // Transactions. Writes outside one are each their own immediate transaction. Nested calls
    // count; only the outermost commits. Use `Transaction` instead of calling these.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void Rollback() = 0;
};

/// One immediate write transaction on a database; rolls back at its end unless committed.
///
/// Never keep one across a turn of the event loop.
class Transaction {
public:
    explicit Transaction(Database& database) : m_database(&database) { database.BeginTrans(); }
    explicit Transaction(Ref<Database>&&) = delete;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// Rolls back when not committed; never throws.
    ~Transaction();
    void commit();

private:
    Ref<Database> m_database;
    bool m_done = false;
};

/// How a database is opened.
struct OpenOptions {
    bool exclusive = false;
    bool readOnly = false; ///< a file or folder that cannot be written opens read-only by itself
};

/// Opens databases and closes all that was opened through it.
///
/// Lifetime: counted. `Close` closes every database opened through it, twice without an error.
/// Thread: the user-interface thread.
class Workspace : public virtual Counted {
public:
    ~Workspace() override;
    [[nodiscard]] virtual QString Name() const = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
    /// Opens a database file. Raises `kErrorCannotOpenDatabase` when it is missing or cannot be
    /// opened, `kErrorNotADatabase` when it is none or damaged, `kErrorLocked` when it stayed
    /// locked; the description names the file.
    [[nodiscard]] virtual Ref<Database> OpenDatabase(const QString& path,
                                                     const OpenOptions& options = {}) = 0;
    /// Makes an empty database file; raises `kErrorCannotOpenDatabase` when the file is there.
    [[nodiscard]] virtual Ref<Database> CreateDatabase(const QString& path) = 0;
    virtual void Close() = 0;
};

/// What a workspace needs of the world. All outlive it.
struct EngineServices {
    Clock& clock;
    FileSystem& files;
    const MountTest* mounts = nullptr; ///< nothing asks the system
};

/// Makes a workspace over the embedded engine.
[[nodiscard]] Ref<Workspace> createWorkspace(const EngineServices& services,
                                             const QString& name = QStringLiteral("Default"));

} // namespace yrw::dao
