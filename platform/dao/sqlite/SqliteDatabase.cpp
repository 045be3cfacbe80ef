#include "platform/dao/sqlite/SqliteDatabase.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/OnlineBackup.h"
#include "platform/dao/sqlite/ForwardRecordset.h"
#include "platform/dao/sqlite/KeysetRecordset.h"
#include "platform/dao/sqlite/SnapshotRecordset.h"
#include "platform/dao/sqlite/TableRecordset.h"

#include <algorithm>
#include <utility>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Database");

/// Gives every parameter of a query its value; those that the caller left out are Null.
Parameters matchParameters(const StoredQuery& query, const Parameters& given) {
    for (const auto& [name, value] : given) {
        if (!query.parameters.contains(name, Qt::CaseInsensitive)) {
            throw AutomationError(
                kErrorNotInCollection, kSource,
                QStringLiteral("The query '%1' has no parameter '%2'.").arg(query.name, name));
        }
    }
    Parameters matched;
    for (const QString& name : query.parameters) {
        matched.set(name, given.value(name));
    }
    return matched;
}

} // namespace

SqliteDatabase::SqliteDatabase(Ref<SqliteWorkspace> workspace,
                               std::unique_ptr<Connection> connection, QString path, bool readOnly)
    : m_workspace(std::move(workspace)), m_connection(std::move(connection)),
      m_path(std::move(path)), m_readOnly(readOnly) {}

SqliteDatabase::~SqliteDatabase() {
    Close();
}

void SqliteDatabase::Close() {
    if (!m_connection) {
        return;
    }
    const std::vector<RecordsetBase*> open = m_recordsets;
    for (RecordsetBase* recordset : open) {
        recordset->Close();
    }
    m_connection->endRead();
    m_connection.reset();
    m_workspace->removeDatabase(this);
}

Connection& SqliteDatabase::connection() const {
    if (!m_connection) {
        throw AutomationError(kErrorObjectClosed, kSource,
                              QStringLiteral("The database is closed."));
    }
    return *m_connection;
}

void SqliteDatabase::removeRecordset(RecordsetBase* recordset) noexcept {
    std::erase(m_recordsets, recordset);
}

Ref<Recordset> SqliteDatabase::open(const Query& query, const QString& name, RecordsetType type,
                                    int options) {
    if (type == RecordsetType::ForwardOnly) {
        return Ref<Recordset>(new ForwardRecordset(*this, query, name, options));
    }
    if (type == RecordsetType::Snapshot || !query.hasKey()) {
        return Ref<Recordset>(new SnapshotRecordset(*this, query, name, options));
    }
    return Ref<Recordset>(new KeysetRecordset(*this, query, name, options));
}

const SqliteDatabase::Known& SqliteDatabase::known(const QString& name) {
    Statement& version = connection().kept(QStringLiteral("PRAGMA schema_version"));
    version.step();
    const qint64 schemaVersion = version.integer(0);
    version.reset();
    const std::pair<qint64, qint64> at{schemaVersion, DataVersion()};
    if (at != m_knownAt) {
        m_known.clear();
        m_knownAt = at;
    }
    const QString key = name.toLower();
    const auto entry = m_known.find(key);
    if (entry != m_known.end()) {
        return entry->second;
    }
    Known found;
    found.source = schema().source(name);
    if (!found.source->isTable) {
        found.stored = schema().storedQuery(name);
    }
    return m_known[key] = std::move(found);
}

void SqliteDatabase::tableChanged(const QString& table) {
    if (table.compare(u"tblQueries", Qt::CaseInsensitive) == 0) {
        m_known.clear();
    }
}

Ref<Recordset> SqliteDatabase::OpenRecordset(const QString& source, RecordsetType type,
                                             int options) {
    if (isSelection(source)) {
        const Selection selection = parseSelection(source);
        const auto rows = known(selection.source).source;
        if (type == RecordsetType::Table) {
            throw AutomationError(kErrorInvalidOperation, kSource,
                                  QStringLiteral("Only a table opens as a table."));
        }
        return open(Query(rows, selection), source, type, options);
    }
    const Known& found = known(source);
    const auto rows = found.source;
    if (!rows->isTable && type == RecordsetType::Table) {
        throw AutomationError(kErrorInvalidOperation, kSource,
                              QStringLiteral("'%1' is no table.").arg(source));
    }
    if (rows->isTable && (type == RecordsetType::Table || type == RecordsetType::Default)) {
        return Ref<Recordset>(new TableRecordset(*this, Query(rows), rows->name, options));
    }
    if (!rows->isTable && found.stored && found.stored->kind == StoredQuery::Kind::Select) {
        return OpenQuery(source, {}, type, options);
    }
    return open(Query(rows), rows->name, type, options);
}

Ref<Recordset> SqliteDatabase::OpenQuery(const QString& name, const Parameters& parameters,
                                         RecordsetType type, int options) {
    const Known& found = known(name);
    const auto rows = found.source;
    StoredQuery stored = found.stored.value_or(StoredQuery());
    stored.name = rows->name;
    Query query(rows);
    query.setParameters(matchParameters(stored, parameters));
    return open(query, rows->name, type, options);
}

qint64 SqliteDatabase::ExecuteQuery(const QString& name, const Parameters& parameters) {
    Transaction transaction(*this); // before anything is read, since only a write may wait
    const auto stored = schema().storedQuery(name);
    if (!stored || stored->kind != StoredQuery::Kind::Action) {
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no action query '%1'.").arg(name));
    }
    const Parameters matched = matchParameters(*stored, parameters);
    Statement statement(connection().handle(), stored->sql, SqlOrigin::StoredAction);
    for (const auto& [parameter, value] : matched) {
        statement.bind(u':' + parameter, value);
    }
    statement.run();
    const qint64 rows = connection().changes();
    transaction.commit();
    return rows;
}

qint64 SqliteDatabase::DeleteRows(const QString& table, const QString& field,
                                  const QVariant& value) {
    Transaction transaction(*this);
    const auto rows = schema().source(table);
    const int column = rows->indexOf(field);
    if (!rows->isTable || column < 0) {
        throw AutomationError(
            kErrorNotInCollection, kSource,
            QStringLiteral("There is no field '%1' in a table '%2'.").arg(field, table));
    }
    Statement statement(connection().handle(), u"DELETE FROM " + rows->sql + u" WHERE " +
                                                   quotedName(rows->columns[size_t(column)].name) +
                                                   u" = ?1");
    statement.bind(1, value);
    statement.run();
    const qint64 count = connection().changes();
    transaction.commit();
    return count;
}

void SqliteDatabase::RunScript(const QString& script) {
    Transaction transaction(*this);
    m_known.clear();
    const QByteArray text = script.toUtf8();
    const PreparingSql preparing(SqlOrigin::Script);
    beginStep(stepLimitOf(SqlOrigin::Script));
    if (sqlite3_exec(connection().handle(), text.constData(), nullptr, nullptr, nullptr) !=
        SQLITE_OK) {
        raiseEngineError(connection().handle(), sqlite3_extended_errcode(connection().handle()));
    }
    transaction.commit();
}

QStringList SqliteDatabase::TableNames() const {
    return schema().tableNames();
}

QStringList SqliteDatabase::QueryNames() const {
    return schema().queryNames();
}

bool SqliteDatabase::hasTable(const QString& name) const {
    return !schema().tableName(name).isEmpty();
}

bool SqliteDatabase::hasField(const QString& table, const QString& field) const {
    return hasTable(table) && schema().source(table)->indexOf(field) >= 0;
}

int SqliteDatabase::SchemaVersion() const {
    return connection().scalar(QStringLiteral("PRAGMA user_version")).toInt();
}

void SqliteDatabase::setSchemaVersion(int version) {
    Transaction transaction(*this);
    connection().execute(QStringLiteral("PRAGMA user_version = %1").arg(version));
    transaction.commit();
}

QStringList SqliteDatabase::CheckIntegrity() {
    QStringList problems;
    try {
        Statement statement(connection().handle(), QStringLiteral("PRAGMA integrity_check"));
        statement.takeAnyTime();
        while (statement.step()) {
            const QString line = statement.text(0);
            if (line != u"ok") {
                problems += line;
            }
        }
    } catch (const AutomationError& error) {
        if (error.number() != kErrorNotADatabase) {
            throw;
        }
        problems += error.description(); // too damaged to be checked to the end
    }
    return problems;
}

qint64 SqliteDatabase::DataVersion() {
    Connection& open = connection();
    open.endAbandonedRead();
    Statement& statement = open.kept(QStringLiteral("PRAGMA data_version"));
    statement.step();
    const qint64 version = statement.integer(0);
    statement.reset();
    return version;
}

void SqliteDatabase::CopyTo(const QString& path) {
    connection().endRead();
    beginBackup(*this, path, ExistingCopy::Keep, connection().clock())->finish();
}

void SqliteDatabase::EndReadTransaction() {
    connection().endRead();
}

void SqliteDatabase::settlePlace() {
    if (!m_takesPlace || connection().inTransaction()) {
        return;
    }
    const bool isForeign = m_placeLock || isAtForeignPlace(m_path, connection().clock());
    if (isForeign && !m_placeLock) {
        m_placeLock = std::make_unique<FolderLock>(FileSystem::folderOf(m_path));
    }
    recordPlace(connection(), m_path, isForeign);
    m_takesPlace = false;
    m_placeLock.reset();
}

void SqliteDatabase::setLockWatch(LockWatch* watch) {
    connection().setLockWatch(watch);
    setLockPatience(watch != nullptr ? LockWaits::kWatchedMs : LockWaits::kUsualMs);
}

int SqliteDatabase::setLockPatience(int milliseconds) {
    return connection().lockWaits().setPatience(milliseconds);
}

void SqliteDatabase::BeginTrans() {
    settlePlace();
    static_cast<void>(connection());
    // Whoever watches a wait may close the database meanwhile.
    const std::shared_ptr<Connection> open = m_connection;
    open->begin();
    if (open != m_connection) {
        open->rollback();
        static_cast<void>(connection());
    }
}

void SqliteDatabase::CommitTrans() {
    connection().commit();
}

void SqliteDatabase::Rollback() {
    connection().rollback();
}

} // namespace yrw::dao
