#include "platform/dao/Database.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/OnlineBackup.h"
#include "platform/dao/Query.h"
#include "platform/dao/Salvage.h"
#include "platform/dao/TextIndex.h"

#include <utility>

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

Database::Database(Ref<Counted> keeper, std::shared_ptr<Connection> connection)
    : m_keeper(std::move(keeper)), m_connection(std::move(connection)) {}

Database::~Database() {
    Close();
}

QString Database::Name() const {
    return m_connection->name();
}

bool Database::isOpen() const {
    return m_connection->isOpen();
}

bool Database::isReadOnly() const {
    return m_connection->isReadOnly();
}

bool Database::isReplaced() const {
    return !connection().isInPlace();
}

void Database::Close() {
    m_connection->close();
}

Connection& Database::connection() const {
    m_connection->requireOpen();
    return *m_connection;
}

Ref<Recordset> Database::OpenRecordset(const QString& source, RecordsetType type, int options) {
    if (isSelection(source)) {
        const Selection selection = parseSelection(source);
        const auto rows = connection().known(selection.source).source;
        if (type == RecordsetType::Table) {
            throw AutomationError(kErrorInvalidOperation, kSource,
                                  QStringLiteral("Only a table opens as a table."));
        }
        return openRecordset(this, connection(), Query(rows, selection), source, type, options);
    }
    const Connection::Known& found = connection().known(source);
    const auto rows = found.source;
    if (!rows->isTable && type == RecordsetType::Table) {
        throw AutomationError(kErrorInvalidOperation, kSource,
                              QStringLiteral("'%1' is no table.").arg(source));
    }
    if (rows->isTable && type == RecordsetType::Default) {
        type = RecordsetType::Table;
    }
    if (!rows->isTable && found.stored && found.stored->kind == StoredQuery::Kind::Select) {
        return OpenQuery(source, {}, type, options);
    }
    return openRecordset(this, connection(), Query(rows), rows->name, type, options);
}

Ref<Recordset> Database::OpenQuery(const QString& name, const Parameters& parameters,
                                   RecordsetType type, int options) {
    const Connection::Known& found = connection().known(name);
    const auto rows = found.source;
    StoredQuery stored = found.stored.value_or(StoredQuery());
    stored.name = rows->name;
    Query query(rows);
    query.setParameters(matchParameters(stored, parameters));
    return openRecordset(this, connection(), query, rows->name,
                         type == RecordsetType::Table ? RecordsetType::Default : type, options);
}

qint64 Database::ExecuteQuery(const QString& name, const Parameters& parameters) {
    Transaction transaction(*this); // before anything is read, since only a write may wait
    const auto stored = connection().schema().storedQuery(name);
    if (!stored || stored->kind != StoredQuery::Kind::Action) {
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no action query '%1'.").arg(name));
    }
    const Parameters matched = matchParameters(*stored, parameters);
    const auto statement = connection().prepare(stored->sql, SqlOrigin::StoredAction);
    for (const auto& [parameter, value] : matched) {
        statement->bind(u':' + parameter, value);
    }
    statement->run();
    const qint64 rows = connection().changes();
    transaction.commit();
    return rows;
}

qint64 Database::DeleteRows(const QString& table, const QString& field, const QVariant& value) {
    Transaction transaction(*this);
    const auto rows = connection().schema().source(table);
    const int column = rows->indexOf(field);
    if (!rows->isTable || column < 0) {
        throw AutomationError(
            kErrorNotInCollection, kSource,
            QStringLiteral("There is no field '%1' in a table '%2'.").arg(field, table));
    }
    const auto statement =
        connection().prepare(u"DELETE FROM " + rows->sql + u" WHERE " +
                             quotedName(rows->columns[size_t(column)].name) + u" = ?1");
    statement->bind(1, value);
    statement->run();
    const qint64 count = connection().changes();
    transaction.commit();
    return count;
}

void Database::RunScript(const QString& script) {
    connection().runScript(script);
}

bool Database::hasTable(const QString& name) const {
    return !connection().schema().tableName(name).isEmpty();
}

bool Database::hasField(const QString& table, const QString& field) const {
    return hasTable(table) && connection().schema().source(table)->indexOf(field) >= 0;
}

int Database::SchemaVersion() const {
    return connection().schema().version();
}

void Database::setSchemaVersion(int version) {
    Transaction transaction(*this);
    connection().schema().setVersion(version);
    transaction.commit();
}

std::vector<FileObject> Database::objects() const {
    return connection().schema().objects();
}

Damage Database::CheckIntegrity() {
    return connection().schema().damage();
}

void Database::rebuildIndexes() {
    RunScript(QStringLiteral("REINDEX"));
}

void Database::CopyTo(const QString& path) {
    Connection& from = connection();
    from.endRead();
    from.backup(path, ExistingCopy::Keep)->finish();
}

std::unique_ptr<OnlineBackup> Database::beginBackup(const QString& path,
                                                    ExistingCopy existing) const {
    return connection().backup(path, existing);
}

std::unique_ptr<TextIndex> Database::textIndex(const TextIndexNames& names) {
    return connection().textIndex(Ref<Counted>(this), names);
}

SalvagedTable Database::salvage(const DamagedFile& file, const QString& table) {
    QStringList names;
    for (const auto& [name, type] : file.columnsOf(table)) {
        names += name;
    }
    return connection().salvage(file.path(), table, names);
}

void Database::setLockWatch(LockWatch* watch) {
    connection().setLockWatch(watch);
}

Transaction::Transaction(Database& database)
    : m_database(&database), m_writing(std::make_unique<Writing>(database.connection())) {}

Transaction::~Transaction() = default;

void Transaction::commit() {
    m_writing->commit();
}

BriefWaits::BriefWaits(Ref<Database> database) : m_database(std::move(database)) {
    constexpr int kBriefMs = 50;
    if (m_database && m_database->isOpen()) {
        m_before = m_database->connection().setLockPatience(kBriefMs);
        m_locksMet = m_database->connection().locksMet();
    }
}

bool BriefWaits::wereInVain() const {
    return m_database && m_database->isOpen() && m_database->connection().locksMet() != m_locksMet;
}

BriefWaits::~BriefWaits() {
    if (m_database && m_database->isOpen()) {
        m_database->connection().setLockPatience(m_before);
    }
}

} // namespace yrw::dao
