#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/SqliteDatabase.h"
#include "platform/dao/sqlite/TextIndexRows.h"

#include <QScopeGuard>

namespace yrw::dao {

namespace {

constexpr int kBatch = 32; ///< rows between two looks at the clock

/// The index of the embedded engine: its full-text table over groups of three letters, which finds
/// inside words too.
class SqliteTextIndex final : public TextIndex {
public:
    SqliteTextIndex(Ref<Database> database, TextIndexNames names)
        : m_database(std::move(database)), m_names(std::move(names)) {}

    void create() override;
    void repair() override;
    [[nodiscard]] qint64 waiting() override;
    bool catchUp(int milliseconds) override;
    [[nodiscard]] std::unique_ptr<TextSearch> search(const QStringList& words,
                                                     std::vector<qint64> keys) override;

private:
    [[nodiscard]] Connection& connection() const {
        return dynamic_cast<SqliteDatabase&>(*m_database).connection();
    }
    /// A script with its "{...}" replaced by the names.
    [[nodiscard]] QString withNames(QString script) const;
    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] bool hasEveryRow() const;
    void listDifferences();

    Ref<Database> m_database;
    TextIndexNames m_names;
    bool m_damaged = false;
};

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
    m_database->RunScript(withNames(QStringLiteral(R"(
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
    if (m_database->isReadOnly()) {
        return;
    }
    const BriefWaits brief(m_database); // a search does without
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
    m_database->RunScript(withNames(QStringLiteral(
        "INSERT OR IGNORE INTO {waiting} SELECT {key} FROM {table} WHERE {key} NOT IN "
        "(SELECT id FROM {index}_docsize);"
        "INSERT OR IGNORE INTO {waiting} SELECT id FROM {index}_docsize WHERE id NOT IN "
        "(SELECT {key} FROM {table})")));
}

qint64 SqliteTextIndex::waiting() {
    return m_database->hasTable(m_names.waiting)
               ? connection()
                     .scalar(QStringLiteral("SELECT count(*) FROM ") + quotedName(m_names.waiting))
                     .toLongLong()
               : 0;
}

bool SqliteTextIndex::catchUp(int milliseconds) {
    if (m_database->isReadOnly() || !isComplete() || waiting() == 0) {
        return false;
    }
    Connection& database = connection();
    const int patience = database.lockWaits().setPatience(0);
    const auto waitAgain = qScopeGuard([&] { database.lockWaits().setPatience(patience); });
    try {
        m_database->BeginTrans();
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLocked) {
            throw;
        }
        return false;
    }
    try {
        const qint64 deadline = database.clock().monotonicMs() + milliseconds;
        {
            TextIndexRows rows(database, m_names);
            do {
                for (const qint64 key : waitingKeys(database, m_names, kBatch)) {
                    rows.takeIn(key);
                }
            } while (database.clock().monotonicMs() < deadline && waiting() > 0);
        }
        m_database->CommitTrans();
    } catch (const AutomationError& error) {
        m_damaged = m_damaged || error.number() == kErrorNotADatabase;
        m_database->Rollback();
        throw;
    }
    return waiting() > 0;
}

std::unique_ptr<TextSearch> SqliteTextIndex::search(const QStringList& words,
                                                    std::vector<qint64> keys) {
    return std::make_unique<SqliteTextSearch>(m_database, m_names, words, std::move(keys),
                                              m_damaged);
}

} // namespace

TextSearch::~TextSearch() = default;
TextIndex::~TextIndex() = default;

std::unique_ptr<TextIndex> openTextIndex(const Ref<Database>& database,
                                         const TextIndexNames& names) {
    return std::make_unique<SqliteTextIndex>(database, names);
}

} // namespace yrw::dao
