#pragma once

#include "platform/dao/Types.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace yrw::dao {

/// A column of a table, a view or a stored query.
struct Column {
    QString name;
    std::optional<FieldType> type; ///< nothing for an expression
    QString baseColumn;            ///< column of the base table; empty when it cannot be written
    QVariant defaultValue;
    int size = 0; ///< longest text in characters; 0 for no limit
};

/// What rows are read from: a table, a view, or a stored query with its parameters.
struct Source {
    QString name;
    QString sql; ///< what stands behind FROM, in the engine's language
    bool isTable = false;
    bool keepsOwnOrder = false; ///< the definition orders its rows
    bool isStored = false;      ///< `sql` is text out of the database
    std::vector<Column> columns;
    QString baseTable; ///< table that changes go to; empty when there is none
    QString baseKey;   ///< its key column in the engine's language
    QString key;       ///< the same key as a column of this source; empty when it has none

    [[nodiscard]] int indexOf(QStringView column) const noexcept;
};

/// A stored query that is no view, or the base table of one that is.
struct StoredQuery {
    enum class Kind { View, Select, Action };
    QString name;
    Kind kind = Kind::View;
    QString baseTable; ///< empty when rows cannot be changed through the query
    QString sql;       ///< empty for a view
    QStringList parameters;
};

/// What the engine's own check found wrong, told apart by what helps; one a line.
struct Damage {
    QStringList indexes; ///< that do not fit their rows: `Database::rebuildIndexes` helps
    QStringList pages;   ///< the file itself
    [[nodiscard]] bool isEmpty() const noexcept { return indexes.isEmpty() && pages.isEmpty(); }
};

/// What a database holds, asked of it each time: another program may change it.
///
/// Lifetime: as long as its connection.
/// Thread: the user-interface thread.
class Schema {
public:
    virtual ~Schema();
    /// Name as the database spells it; empty when there is no such table.
    [[nodiscard]] virtual QString tableName(const QString& name) const = 0;
    /// Entry of the table of stored queries.
    [[nodiscard]] virtual std::optional<StoredQuery> storedQuery(const QString& name) const = 0;
    /// A table, a view or a stored select query. Raises `kErrorNotInCollection`.
    [[nodiscard]] virtual std::shared_ptr<const Source> source(const QString& name) const = 0;
    /// The columns of an index in order. Raises `kErrorNotInCollection`.
    [[nodiscard]] virtual QStringList indexColumns(const QString& table,
                                                   const QString& index) const = 0;
    [[nodiscard]] virtual std::vector<FileObject> objects() const = 0;

    /// Number of the schema; 0 when none was set. It is set within a transaction.
    [[nodiscard]] virtual int version() const = 0;
    virtual void setVersion(int version) const = 0;
    [[nodiscard]] virtual Damage damage() const = 0;
};

/// A name in quotes.
[[nodiscard]] QString quotedName(const QString& name);

} // namespace yrw::dao
