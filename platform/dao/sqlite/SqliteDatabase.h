#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/sqlite/Connection.h"
#include "platform/dao/sqlite/Schema.h"
#include "platform/files/FolderLock.h"

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace yrw::dao {

class RecordsetBase;
class SqliteWorkspace;

/// A database in one file of the engine.
///
/// Lifetime: keeps its workspace alive; its recordsets keep it alive. Closing it closes them.
/// Thread: the user-interface thread.
class SqliteDatabase final : public Database {
public:
    SqliteDatabase(Ref<SqliteWorkspace> workspace, std::unique_ptr<Connection> connection,
                   QString path, bool readOnly);
    ~SqliteDatabase() override;

    [[nodiscard]] QString Name() const override { return m_path; }
    [[nodiscard]] bool isOpen() const override { return m_connection != nullptr; }
    [[nodiscard]] bool isReadOnly() const override { return m_readOnly; }
    [[nodiscard]] bool isReplaced() const override { return !connection().isInPlace(); }
    void Close() override;

    [[nodiscard]] Ref<Recordset> OpenRecordset(const QString& source, RecordsetType type,
                                               int options) override;
    [[nodiscard]] Ref<Recordset> OpenQuery(const QString& name, const Parameters& parameters,
                                           RecordsetType type, int options) override;
    qint64 ExecuteQuery(const QString& name, const Parameters& parameters) override;
    qint64 DeleteRows(const QString& table, const QString& field, const QVariant& value) override;
    void RunScript(const QString& script) override;

    [[nodiscard]] QStringList TableNames() const override;
    [[nodiscard]] QStringList QueryNames() const override;
    [[nodiscard]] bool hasTable(const QString& name) const override;
    [[nodiscard]] bool hasField(const QString& table, const QString& field) const override;
    [[nodiscard]] int SchemaVersion() const override;
    void setSchemaVersion(int version) override;
    [[nodiscard]] QStringList CheckIntegrity() override;
    [[nodiscard]] qint64 DataVersion() override;
    void CopyTo(const QString& path) override;

    void EndReadTransaction() override;
    void setLockWatch(LockWatch* watch) override;
    int setLockPatience(int milliseconds) override;
    [[nodiscard]] qint64 LocksMet() const override { return connection().lockWaits().locksMet(); }
    void BeginTrans() override;
    void CommitTrans() override;
    void Rollback() override;

    /// The connection; raises `kErrorObjectClosed` after closing.
    [[nodiscard]] Connection& connection() const;
    void addRecordset(RecordsetBase* recordset) { m_recordsets.push_back(recordset); }
    void removeRecordset(RecordsetBase* recordset) noexcept;
    /// Opens the recordset that a query and a type call for.
    [[nodiscard]] Ref<Recordset> open(const Query& query, const QString& name, RecordsetType type,
                                      int options);

    /// Has the first write put the file's place into it: a file that turns out to be of no use is
    /// not written to.
    void takePlaceBeforeWriting() noexcept { m_takesPlace = true; }
    /// Does that now, outside a transaction. Raises `kErrorLocked`.
    void settlePlace();
    /// Forgets what is known of the file's tables and queries when a change may have altered it.
    void tableChanged(const QString& table);

private:
    struct Known {
        std::shared_ptr<const Source> source;
        std::optional<StoredQuery> stored;
    };

    [[nodiscard]] Schema schema() const { return Schema(connection()); }
    /// A source and its stored query, asked of the file once until the file is changed.
    [[nodiscard]] const Known& known(const QString& name);

    Ref<SqliteWorkspace> m_workspace;
    std::shared_ptr<Connection> m_connection;
    QString m_path;
    bool m_readOnly;
    bool m_takesPlace = false;
    std::unique_ptr<FolderLock> m_placeLock; ///< from a settling that failed half way
    std::vector<RecordsetBase*> m_recordsets;
    std::map<QString, Known> m_known;    ///< by name in lower case
    std::pair<qint64, qint64> m_knownAt; ///< versions of schema and data
};

/// Opens databases of the engine.
class SqliteWorkspace final : public Workspace {
public:
    SqliteWorkspace(const EngineServices& services, QString name);
    ~SqliteWorkspace() override;

    [[nodiscard]] QString Name() const override { return m_name; }
    [[nodiscard]] bool isOpen() const override { return m_open; }
    [[nodiscard]] Ref<Database> OpenDatabase(const QString& path,
                                             const OpenOptions& options) override;
    [[nodiscard]] Ref<Database> CreateDatabase(const QString& path) override;
    void Close() override;

    void removeDatabase(SqliteDatabase* database) noexcept;

private:
    void requireOpen() const;
    [[nodiscard]] std::unique_ptr<Connection> connect(const QString& file,
                                                      Connection::Access access) const;
    [[nodiscard]] std::unique_ptr<Connection> connectReader(const QString& file) const;
    [[nodiscard]] std::unique_ptr<Connection> connectWriter(const QString& file,
                                                            bool& isLocal) const;
    static void takeAlone(Connection& connection);
    [[nodiscard]] Ref<Database> keep(std::unique_ptr<Connection> connection, const QString& file,
                                     bool readOnly);

    EngineServices m_services;
    QString m_name;
    bool m_open = true;
    std::vector<SqliteDatabase*> m_databases;
};

} // namespace yrw::dao
