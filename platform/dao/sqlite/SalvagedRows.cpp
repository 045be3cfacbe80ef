#include "platform/dao/sqlite/SalvagedRows.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/Schema.h"
#include "platform/dao/sqlite/ReadHandle.h"
#include "platform/dao/sqlite/SqliteFile.h"
#include "platform/dao/sqlite/Statement.h"

#include <QStringList>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

/// Keys that are asked for one by one where no walk leads; beyond, a gap counts as lost.
constexpr qint64 kMostSingleKeys = 2'000'000;

/// Puts one row after another into a table.
class RowWriter {
public:
    RowWriter(const SqliteFile& target, const QString& table, const QStringList& columns) {
        QStringList names{QStringLiteral("rowid")};
        QStringList places{QStringLiteral("?")};
        for (const QString& column : columns) {
            names += quotedName(column);
            places += QStringLiteral("?");
        }
        m_insert = Statement(target.handle(),
                             QStringLiteral("INSERT OR REPLACE INTO %1 (%2) VALUES (%3)")
                                 .arg(quotedName(table), names.join(u','), places.join(u',')));
    }

    void key(qint64 key) { m_insert.bind(1, key); }
    /// Takes over the value of a column, 0-based, as it is stored.
    void value(int column, sqlite3_value* value) {
        sqlite3_bind_value(m_insert.handle(), column + 2, value);
    }
    void nothing(int column) { sqlite3_bind_null(m_insert.handle(), column + 2); }
    void write() { m_insert.run(); }

private:
    Statement m_insert;
};

/// Reads one table by its keys: from the front and from the back as far as the walk leads, and each
/// key between by itself.
class TableReader {
public:
    TableReader(const ReadHandle& file, const QString& table, QStringList columns,
                const SqliteFile& target)
        : m_file(file), m_table(quotedName(table)), m_columns(std::move(columns)),
          m_writer(target, table, m_columns) {
        m_result.table = table;
    }

    SalvagedTable run() {
        if (!walk(true, m_front)) {
            m_result.isOpenEnded = !walk(false, m_back) && !m_back && !highestGiven();
            fillGap();
        }
        return std::move(m_result);
    }

private:
    [[nodiscard]] QString selection(const QString& what, const QString& rest) const {
        return u"SELECT " + what + u" FROM " + m_table + u" NOT INDEXED" + rest;
    }

    /// Copies rows in one direction, up to `reached`; true when the walk came to its end.
    bool walk(bool isUpward, std::optional<qint64>& reached) {
        try {
            const QString direction = isUpward ? QStringLiteral("ASC") : QStringLiteral("DESC");
            Statement keys(m_file.get(),
                           selection(QStringLiteral("rowid"), u" ORDER BY rowid " + direction));
            while (keys.step()) {
                const qint64 key = keys.integer(0);
                if (!isUpward && m_front && key <= *m_front) {
                    return true; // met what the other walk copied
                }
                // Pages that lead to each other could go on for ever.
                if (reached && (isUpward ? key <= *reached : key >= *reached)) {
                    return false;
                }
                reached = key;
                copyRow(key);
            }
            return true;
        } catch (const AutomationError& error) {
            requireDamage(error);
            return false;
        }
    }

    /// The keys that neither walk came to.
    void fillGap() {
        const qint64 before = m_front.value_or(0);
        const qint64 behind = m_back.value_or(highestGiven().value_or(before));
        // Counted without a sign: a damaged file may hold any number.
        const quint64 keys = behind > before ? quint64(behind) - quint64(before) : 0;
        if (keys > quint64(kMostSingleKeys)) {
            m_result.lost.emplace_back(before + 1, m_back ? behind - 1 : behind);
            return;
        }
        for (quint64 i = 1; i < keys; ++i) {
            copyRow(before + qint64(i));
        }
        if (keys > 0 && !m_back) {
            copyRow(behind);
        }
    }

    /// The highest key that the file says it has given; nothing when it does not say.
    [[nodiscard]] std::optional<qint64> highestGiven() const {
        try {
            Statement given(m_file.get(),
                            QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = ?1"));
            given.bind(1, QVariant(m_result.table));
            return given.step() ? std::optional(given.integer(0)) : std::nullopt;
        } catch (const AutomationError& error) {
            requireDamage(error);
            return std::nullopt;
        }
    }

    void copyRow(qint64 key) {
        try {
            Statement& row = prepared(m_row, allColumns());
            row.bind(1, key);
            if (row.step()) {
                m_writer.key(key);
                for (int column = 0; column < m_columns.size(); ++column) {
                    m_writer.value(column, sqlite3_column_value(row.handle(), column));
                }
                m_writer.write();
                ++m_result.rows;
            }
            row.reset();
        } catch (const AutomationError& error) {
            requireDamage(error);
            copyFields(key);
        }
    }

    /// A row that cannot be had whole: field by field.
    void copyFields(qint64 key) {
        QStringList holes;
        bool isThere = false;
        m_writer.key(key);
        for (int column = 0; column < m_columns.size(); ++column) {
            try {
                Statement field(m_file.get(), selection(quotedName(m_columns.at(column)),
                                                        QStringLiteral(" WHERE rowid = ?1")));
                field.bind(1, key);
                if (!field.step()) {
                    return; // there is no such row
                }
                m_writer.value(column, sqlite3_column_value(field.handle(), 0));
                isThere = isThere || sqlite3_column_type(field.handle(), 0) != SQLITE_NULL;
            } catch (const AutomationError& error) {
                requireDamage(error);
                m_writer.nothing(column);
                holes += m_columns.at(column);
            }
        }
        if (!isThere || holes.size() == m_columns.size()) {
            addLost(key);
            return;
        }
        m_writer.write();
        ++m_result.rows;
        for (const QString& hole : std::as_const(holes)) {
            m_result.holes.emplace_back(key, hole);
        }
    }

    void addLost(qint64 key) {
        if (!m_result.lost.empty() && m_result.lost.back().second == key - 1) {
            m_result.lost.back().second = key;
        } else {
            m_result.lost.emplace_back(key, key);
        }
    }

    [[nodiscard]] QString allColumns() const {
        QStringList names;
        for (const QString& column : m_columns) {
            names += quotedName(column);
        }
        return selection(names.join(u','), QStringLiteral(" WHERE rowid = ?1"));
    }

    Statement& prepared(Statement& statement, const QString& sql) {
        if (statement.isEmpty()) {
            statement = Statement(m_file.get(), sql);
        }
        return statement;
    }

    /// Passes on what is no damage of the file.
    static void requireDamage(const AutomationError& error) {
        if (error.number() != kErrorNotADatabase && error.number() != kErrorDatabaseEngine) {
            throw error; // NOLINT(cert-err60-cpp): as it came
        }
    }

    const ReadHandle& m_file;
    QString m_table;
    QStringList m_columns;
    RowWriter m_writer;
    Statement m_row;
    std::optional<qint64> m_front;
    std::optional<qint64> m_back;
    SalvagedTable m_result;
};

/// A damaged file of the embedded engine.
class SqliteDamagedFile final : public DamagedFile {
public:
    explicit SqliteDamagedFile(const QString& path) : m_path(path), m_file(path) {
        m_file.readDamagedSchema();
    }

    [[nodiscard]] QString path() const override { return m_path; }
    [[nodiscard]] QStringList tableNames() const override {
        Statement statement(
            m_file.get(),
            QStringLiteral("SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE "
                           "'sqlite\\_%' ESCAPE '\\' AND sql NOT LIKE 'CREATE VIRTUAL%'"));
        QStringList names;
        while (statement.step()) {
            names += statement.text(0);
        }
        return names;
    }
    [[nodiscard]] QString tableSql(const QString& table) const override {
        Statement statement(m_file.get(),
                            QStringLiteral("SELECT sql FROM sqlite_schema WHERE name = ?1"));
        statement.bind(1, QVariant(table));
        return statement.step() ? statement.text(0) : QString();
    }
    [[nodiscard]] std::vector<std::pair<QString, QString>>
    columnsOf(const QString& table) const override {
        Statement statement(m_file.get(),
                            QStringLiteral("SELECT name, type FROM pragma_table_info(?1)"));
        statement.bind(1, QVariant(table));
        std::vector<std::pair<QString, QString>> columns;
        while (statement.step()) {
            columns.emplace_back(statement.text(0), statement.text(1));
        }
        return columns;
    }

private:
    QString m_path;
    ReadHandle m_file;
};

} // namespace

std::unique_ptr<DamagedFile> openDamagedFile(const QString& path) {
    try {
        auto file = std::make_unique<SqliteDamagedFile>(path);
        return file->tableNames().isEmpty() ? nullptr : std::move(file);
    } catch (const AutomationError&) {
        return nullptr;
    }
}

SalvagedTable salvageRows(const QString& damaged, const QString& table, const QStringList& columns,
                          const SqliteFile& target) {
    ReadHandle file(damaged);
    file.readDamagedSchema();
    return TableReader(file, table, columns, target).run();
}

} // namespace yrw::dao
