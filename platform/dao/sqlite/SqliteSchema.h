#pragma once

#include "platform/dao/Schema.h"

struct sqlite3;

namespace yrw::dao {

class SqliteFile;

/// What a database file holds.
class SqliteSchema final : public Schema {
public:
    explicit SqliteSchema(const SqliteFile& file) : m_file(file) {}

    [[nodiscard]] QString tableName(const QString& name) const override;
    [[nodiscard]] std::optional<StoredQuery> storedQuery(const QString& name) const override;
    [[nodiscard]] std::shared_ptr<const Source> source(const QString& name) const override;
    [[nodiscard]] QStringList indexColumns(const QString& table,
                                           const QString& index) const override;
    [[nodiscard]] std::vector<FileObject> objects() const override;
    [[nodiscard]] int version() const override;
    void setVersion(int version) const override;
    [[nodiscard]] Damage damage() const override;

private:
    [[nodiscard]] std::shared_ptr<const Source> tableSource(const QString& table) const;
    [[nodiscard]] std::shared_ptr<const Source> querySource(const StoredQuery& query,
                                                            const QString& sql) const;
    [[nodiscard]] QString viewSql(const QString& name, QString& spelled) const;
    [[nodiscard]] std::vector<Column> tableColumns(const QString& table, QString& key) const;

    const SqliteFile& m_file;
};

} // namespace yrw::dao
