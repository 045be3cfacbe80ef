#include "platform/dao/sqlite/SqliteTextIndex.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/sqlite/LockWaits.h"
#include "platform/dao/sqlite/TextIndexRows.h"

#include <QScopeGuard>

namespace yrw::dao {

namespace {

constexpr int kBatch = 32; ///< rows between two looks at the clock

} // namespace

SqliteTextIndex::SqliteTextIndex(Ref<Counted> keeper, Connection& connection,
                                 const SqliteFile& file, TextIndexNames names)
    : m_keeper(std::move(keeper)), m_connection(connection), m_file(file),
      m_names(std::move(names)) {}

Connection& SqliteTextIndex::connection() const {
    m_connection.requireOpen();
    return m_connection;
}

QString SqliteTextIndex::withNames(QString script) const {
    QStringList fields;
    QStringList changes;
    for (const QString& field : m_names.fields) {
        fields.append(field);
        changes.append(QStringLiteral("old.%1 IS NOT new.%1").arg(field));
    }
    const std::pair<QString, QString> words[] = {
        {QStringLiteral("{table}"), m_names.table},
        {QStringLiteral("{key}"), m_names.key},
        {QStringLiteral("{index}"), m_names.index},
        {QStringLiteral("{waiting}"), m_names.waiting},
        {QStringLiteral("{fields}"), fields.join(QStringLiteral(", "))},
        {QStringLiteral("{changed}"), changes.join(QStringLiteral(" OR "))},
    };
    for (const auto& [placeholder, name] : words) {
        script.replace(placeholder, name);
    }
    return script;
}

void SqliteTextIndex::create() {
    connection().runScript(withNames(QStringLiteral(R"(
DROP TRIGGER IF EXISTS {index}Added;
DROP TRIGGER IF EXISTS {index}Changed;
DROP TRIGGER IF EXISTS {index}Deleted;
DROP TABLE IF EXISTS {waiting};
DROP TABLE IF EXISTS {index};
CREATE TABLE {waiting} (RecordID INTEGER PRIMARY KEY);
CREATE VIRTUAL TABLE {index} USING fts5(Folded, tokenize='trigram case_sensitive 1', detail=none);
CREATE TRIGGER {index}Added AFTER INSERT ON {table} BEGIN
    INSERT OR IGNORE INTO {waiting} VALUES (new.{key});
END;
CREATE TRIGGER {index}Changed AFTER UPDATE OF {key}, {fields} ON {table}
WHEN old.{key} <> new.{key} OR {changed} BEGIN
    INSERT OR IGNORE INTO {waiting} VALUES (old.{key}), (new.{key});
END;
CREATE TRIGGER {index}Deleted AFTER DELETE ON {table} BEGIN
    INSERT OR IGNORE INTO {waiting} VALUES (old.{key});
END;
INSERT INTO {waiting} SELECT {key} FROM {table};
)")));
    m_damaged = false;
}

void SqliteTextIndex::repair() {
    if (connection().isReadOnly()) {
        return;
    }
    const int patience = connection().setLockPatience(LockWaits::kBriefMs); // a search does without
    const auto waitAgain = qScopeGuard([&] { m_connection.setLockPatience(patience); });
    if (m_damaged || !isComplete()) {
        create();
    } else if (waiting() == 0 && !hasEveryRow()) {
        listDifferences();
    }
}

/// False when a table or a trigger is missing: a program that rebuilds a table drops its triggers.
bool SqliteTextIndex::isComplete() const {
    return connection()
               .scalar(withNames(QStringLiteral(
                   "SELECT count(*) FROM sqlite_schema WHERE (type = 'table' AND name IN "
                   "('{index}', '{waiting}')) OR (type = 'trigger' AND tbl_name = '{table}' AND "
                   "name IN ('{index}Added', '{index}Changed', '{index}Deleted'))")))
               .toInt() == 5;
}

bool SqliteTextIndex::hasEveryRow() const {
    return connection()
        .scalar(withNames(QStringLiteral(
            "SELECT (SELECT count(*) FROM {table}) = (SELECT count(*) FROM {index}_docsize) AND "
            "(SELECT max({key}) FROM {table}) IS (SELECT max(id) FROM {index}_docsize)")))
        .toBool();
}

void SqliteTextIndex::listDifferences() {
    connection().runScript(withNames(QStringLiteral(
        "INSERT OR IGNORE INTO {waiting} SELECT {key} FROM {table} WHERE {key} NOT IN "
        "(SELECT id FROM {index}_docsize);"
        "INSERT OR IGNORE INTO {waiting} SELECT id FROM {index}_docsize WHERE id NOT IN "
        "(SELECT {key} FROM {table})")));
}

qint64 SqliteTextIndex::waiting() {
    return !connection().schema().tableName(m_names.waiting).isEmpty()
               ? connection()
                     .scalar(QStringLiteral("SELECT count(*) FROM ") + quotedName(m_names.waiting))
                     .toLongLong()
               : 0;
}

bool SqliteTextIndex::catchUp(int milliseconds) {
    if (connection().isReadOnly() || !isComplete() || waiting() == 0) {
        return false;
    }
    const int patience = m_connection.setLockPatience(0);
    const auto waitAgain = qScopeGuard([&] { m_connection.setLockPatience(patience); });
    std::optional<Writing> writing;
    try {
        writing.emplace(m_connection);
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLocked) {
            throw;
        }
        return false;
    }
    try {
        const qint64 deadline = m_connection.clock().monotonicMs() + milliseconds;
        {
            TextIndexRows rows(m_file, m_names);
            do {
                for (const qint64 key : waitingKeys(m_file, m_names, kBatch)) {
                    rows.takeIn(key);
                }
            } while (m_connection.clock().monotonicMs() < deadline && waiting() > 0);
        }
        writing->commit();
    } catch (const AutomationError& error) {
        m_damaged = m_damaged || error.number() == kErrorNotADatabase;
        throw;
    }
    return waiting() > 0;
}

std::unique_ptr<TextSearch> SqliteTextIndex::search(const QStringList& words,
                                                    std::vector<qint64> keys) {
    return std::make_unique<SqliteTextSearch>(m_keeper, connection(), m_file, m_names, words,
                                              std::move(keys), m_damaged);
}

QString SqliteTextIndex::problem() {
    const QString index = quotedName(m_names.index);
    if (!connection().isReadOnly()) {
        try {
            const Writing check(m_connection);
            m_connection.execute(
                QStringLiteral("INSERT INTO %1(%1) VALUES ('integrity-check')").arg(index));
        } catch (const AutomationError& error) {
            if (error.number() != kErrorNotADatabase) {
                throw;
            }
            return QStringLiteral("the index contradicts itself");
        }
    }
    const QString waiting = quotedName(m_names.waiting);
    const auto count = [&](const QString& from, const QString& fromKey, const QString& in,
                           const QString& inKey) {
        return m_connection
            .scalar(QStringLiteral("SELECT count(*) FROM %1 WHERE %2 NOT IN (SELECT %4 FROM %3) "
                                   "AND %2 NOT IN (SELECT RecordID FROM %5)")
                        .arg(from, fromKey, in, inKey, waiting))
            .toLongLong();
    };
    const QString sizes = quotedName(m_names.index + QStringLiteral("_docsize"));
    const QString table = quotedName(m_names.table);
    const QString key = quotedName(m_names.key);
    const qint64 lacking = count(table, key, sizes, QStringLiteral("id"));
    const qint64 surplus = count(sizes, QStringLiteral("id"), table, key);
    if (lacking == 0 && surplus == 0) {
        return {};
    }
    return QStringLiteral("the index lacks %1 notes and has %2 that are gone")
        .arg(lacking)
        .arg(surplus);
}

} // namespace yrw::dao
