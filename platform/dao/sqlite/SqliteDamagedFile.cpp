#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/Salvage.h"
#include "platform/dao/sqlite/ReadHandle.h"
#include "platform/dao/sqlite/Statement.h"

namespace yrw::dao {

namespace {

/// A damaged file of the embedded engine.
class SqliteDamagedFile final : public DamagedFile {
public:
    explicit SqliteDamagedFile(const QString& path) : m_path(path), m_file(path) {
        m_file.readDamagedSchema();
    }

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
    [[nodiscard]] SalvagedTable copyTable(const QString& table, Database& target) const override {
        QStringList names;
        for (const auto& [name, type] : columnsOf(table)) {
            names += name;
        }
        return target.connection().salvage(m_path, table, names);
    }

private:
    QString m_path;
    ReadHandle m_file;
};

} // namespace

std::unique_ptr<DamagedFile> openDamaged(const QString& path) {
    try {
        auto file = std::make_unique<SqliteDamagedFile>(path);
        return file->tableNames().isEmpty() ? nullptr : std::move(file);
    } catch (const AutomationError&) {
        return nullptr;
    }
}

} // namespace yrw::dao
