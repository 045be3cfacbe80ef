#include "platform/dao/sqlite/SqliteSchema.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/SqliteFile.h"
#include "platform/dao/sqlite/Statement.h"

#include <QRegularExpression>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

bool hasQueryTable(const Schema& schema) {
    return !schema.tableName(QStringLiteral("tblQueries")).isEmpty();
}

[[noreturn]] void raiseUnknown(const QString& name) {
    throw AutomationError(kErrorNotInCollection, QStringLiteral("YRW.Database"),
                          QStringLiteral("There is no table or query '%1'.").arg(name));
}

QString fromUtf8OrEmpty(const char* text) {
    return text == nullptr ? QString() : QString::fromUtf8(text);
}

} // namespace

QString SqliteSchema::tableName(const QString& name) const {
    Statement statement(m_file.handle(),
                        QStringLiteral("SELECT name FROM sqlite_schema WHERE type='table' AND "
                                       "name = ?1 COLLATE NOCASE"));
    statement.bind(1, QVariant(name));
    return statement.step() ? statement.text(0) : QString();
}

QString SqliteSchema::viewSql(const QString& name, QString& spelled) const {
    Statement statement(m_file.handle(),
                        QStringLiteral("SELECT name, sql FROM sqlite_schema WHERE type='view' AND "
                                       "name = ?1 COLLATE NOCASE"));
    statement.bind(1, QVariant(name));
    if (!statement.step()) {
        return {};
    }
    spelled = statement.text(0);
    return statement.text(1);
}

std::optional<StoredQuery> SqliteSchema::storedQuery(const QString& name) const {
    if (!hasQueryTable(*this)) {
        return std::nullopt;
    }
    Statement statement(m_file.handle(),
                        QStringLiteral("SELECT Name, Kind, BaseTable, SQL, Parameters FROM "
                                       "tblQueries WHERE Name = ?1 COLLATE NOCASE"));
    statement.bind(1, QVariant(name));
    if (!statement.step()) {
        return std::nullopt;
    }
    StoredQuery query;
    query.name = statement.text(0);
    const QString kind = statement.text(1);
    query.kind = kind == u"select"   ? StoredQuery::Kind::Select
                 : kind == u"action" ? StoredQuery::Kind::Action
                                     : StoredQuery::Kind::View;
    query.baseTable = statement.text(2);
    query.sql = statement.text(3);
    // Parameters are listed as "Name Type, Name Type"; the type is for the reader.
    for (const QString& parameter : statement.text(4).split(u',', Qt::SkipEmptyParts)) {
        query.parameters += parameter.trimmed().section(u' ', 0, 0);
    }
    return query;
}

std::vector<Column> SqliteSchema::tableColumns(const QString& table, QString& key) const {
    std::vector<Column> columns;
    key = QStringLiteral("rowid");
    Statement statement(
        m_file.handle(),
        QStringLiteral("SELECT name, type, dflt_value, pk FROM pragma_table_info(?1)"));
    statement.bind(1, QVariant(table));
    while (statement.step()) {
        Column column;
        column.name = statement.text(0);
        column.baseColumn = column.name;
        const QString declared = statement.text(1);
        column.type = fieldTypeOf(declared);
        column.size = fieldSizeOf(declared);
        const QString standard = statement.text(2);
        if (!standard.isEmpty()) {
            Statement evaluate(m_file.handle(), u"SELECT " + standard, SqlOrigin::Stored);
            evaluate.step();
            column.defaultValue = evaluate.value(0, column.type);
        }
        if (statement.integer(3) == 1 && declared.compare(u"INTEGER", Qt::CaseInsensitive) == 0) {
            key = quotedName(column.name);
            column.type = FieldType::Long;
        }
        columns.push_back(std::move(column));
    }
    return columns;
}

std::shared_ptr<const Source> SqliteSchema::tableSource(const QString& table) const {
    auto source = std::make_shared<Source>();
    source->name = table;
    source->sql = quotedName(table);
    source->isTable = true;
    source->columns = tableColumns(table, source->key);
    source->baseTable = table;
    source->baseKey = source->key;
    return source;
}

std::shared_ptr<const Source> SqliteSchema::querySource(const StoredQuery& query,
                                                        const QString& sql) const {
    auto source = std::make_shared<Source>();
    source->name = query.name;
    source->sql =
        query.kind == StoredQuery::Kind::View ? quotedName(query.name) : u'(' + query.sql + u')';
    source->keepsOwnOrder = sql.contains(u"ORDER BY", Qt::CaseInsensitive);
    QString baseKey;
    std::vector<Column> base;
    if (!query.baseTable.isEmpty()) {
        base = tableColumns(query.baseTable, baseKey);
    }
    source->isStored = query.kind != StoredQuery::Kind::View;
    const Statement statement(m_file.handle(), u"SELECT * FROM " + source->sql,
                              source->isStored ? SqlOrigin::Stored : SqlOrigin::Own);
    if (!statement.isReadOnly()) {
        raiseUnknown(query.name);
    }
    for (int i = 0; i < statement.columnCount(); ++i) {
        Column column;
        column.name = statement.columnName(i);
        column.type = fieldTypeOf(fromUtf8OrEmpty(sqlite3_column_decltype(statement.handle(), i)));
        const QString table = fromUtf8OrEmpty(sqlite3_column_table_name(statement.handle(), i));
        const QString origin = fromUtf8OrEmpty(sqlite3_column_origin_name(statement.handle(), i));
        if (table.compare(query.baseTable, Qt::CaseInsensitive) == 0 && !table.isEmpty()) {
            for (const Column& known : base) {
                if (known.name == origin) {
                    column = {column.name, known.type, known.name, known.defaultValue, known.size};
                }
            }
            if (source->key.isEmpty() && quotedName(origin) == baseKey) {
                source->key = quotedName(column.name);
            }
        }
        source->columns.push_back(std::move(column));
    }
    if (!source->key.isEmpty()) {
        source->baseTable = query.baseTable;
        source->baseKey = baseKey;
    }
    return source;
}

std::shared_ptr<const Source> SqliteSchema::source(const QString& name) const {
    const QString table = tableName(name);
    if (!table.isEmpty()) {
        return tableSource(table);
    }
    auto stored = storedQuery(name);
    QString spelled;
    const QString view = viewSql(name, spelled);
    if (!view.isEmpty()) {
        StoredQuery query = stored.value_or(StoredQuery());
        query.name = spelled;
        query.kind = StoredQuery::Kind::View;
        return querySource(query, view);
    }
    if (!stored || stored->kind != StoredQuery::Kind::Select) {
        raiseUnknown(name);
    }
    return querySource(*stored, stored->sql);
}

std::vector<FileObject> SqliteSchema::objects() const {
    Statement statement(m_file.handle(),
                        QStringLiteral("SELECT type, name, tbl_name, sql FROM sqlite_schema WHERE "
                                       "sql IS NOT NULL AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
                                       "ORDER BY rowid"));
    std::vector<FileObject> objects;
    while (statement.step()) {
        objects.push_back(
            {statement.text(0), statement.text(1), statement.text(2), statement.text(3)});
    }
    return objects;
}

QStringList SqliteSchema::indexColumns(const QString& table, const QString& index) const {
    Statement statement(m_file.handle(),
                        QStringLiteral("SELECT x.name FROM pragma_index_list(?1) AS l, "
                                       "pragma_index_info(l.name) AS x WHERE l.name = ?2 COLLATE "
                                       "NOCASE AND l.partial = 0 ORDER BY x.seqno"));
    statement.bind(1, QVariant(table));
    statement.bind(2, QVariant(index));
    QStringList names;
    while (statement.step()) {
        names += statement.text(0);
    }
    if (names.isEmpty()) {
        throw AutomationError(kErrorNotInCollection, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("There is no index '%1'.").arg(index));
    }
    return names;
}

int SqliteSchema::version() const {
    return m_file.scalar(QStringLiteral("PRAGMA user_version")).toInt();
}

void SqliteSchema::setVersion(int version) const {
    m_file.execute(QStringLiteral("PRAGMA user_version = %1").arg(version));
}

Damage SqliteSchema::damage() const {
    static const QRegularExpression ofIndex(
        QStringLiteral("^(row \\d+ missing from index|wrong # of entries in index|non-unique entry "
                       "in index|row \\d+ values differ from index)"),
        QRegularExpression::CaseInsensitiveOption);
    Damage damage;
    try {
        Statement statement(m_file.handle(), QStringLiteral("PRAGMA integrity_check"));
        statement.takeAnyTime();
        while (statement.step()) {
            const QString line = statement.text(0);
            if (line != u"ok") {
                (ofIndex.match(line).hasMatch() ? damage.indexes : damage.pages) +=
                    line.simplified();
            }
        }
    } catch (const AutomationError& error) {
        if (error.number() != kErrorNotADatabase) {
            throw;
        }
        damage.pages += error.description().simplified(); // too damaged to be checked to the end
    }
    return damage;
}

} // namespace yrw::dao
