#pragma once

#include "platform/dao/sqlite/Query.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace yrw::dao {

class Connection;

/// A stored query that is no view, or the base table of one that is.
struct StoredQuery {
    enum class Kind { View, Select, Action };
    QString name;
    Kind kind = Kind::View;
    QString baseTable; ///< empty when rows cannot be changed through the query
    QString sql;       ///< empty for a view
    QStringList parameters;
};

/// What a database file holds, asked of the file each time: another program may change it.
///
/// Lifetime: as long as its connection.
/// Thread: the user-interface thread.
class Schema {
public:
    explicit Schema(Connection& connection) : m_connection(connection) {}

    [[nodiscard]] QStringList tableNames() const;
    [[nodiscard]] QStringList queryNames() const;
    /// Names as the file spells them; empty when there is no such table.
    [[nodiscard]] QString tableName(const QString& name) const;
    /// Entry of the table of stored queries.
    [[nodiscard]] std::optional<StoredQuery> storedQuery(const QString& name) const;

    /// A table, a view or a stored select query. Raises `kErrorNotInCollection`.
    [[nodiscard]] std::shared_ptr<const Source> source(const QString& name) const;
    /// The columns of an index in order. Raises `kErrorNotInCollection`.
    [[nodiscard]] QStringList indexColumns(const QString& table, const QString& index) const;

private:
    [[nodiscard]] std::shared_ptr<const Source> tableSource(const QString& table) const;
    [[nodiscard]] std::shared_ptr<const Source> querySource(const StoredQuery& query,
                                                            const QString& sql) const;
    [[nodiscard]] QString viewSql(const QString& name, QString& spelled) const;
    [[nodiscard]] std::vector<Column> tableColumns(const QString& table, QString& key) const;

    Connection& m_connection;
};

} // namespace yrw::dao
