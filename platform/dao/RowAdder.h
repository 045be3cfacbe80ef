#pragma once

#include "platform/dao/Database.h"

#include <QStringList>

#include <vector>

namespace yrw::dao {

class Cursor;
struct Column;

/// Adds many rows to one table, by one statement: for what fills tables.
///
/// Lifetime: within one transaction of the database, which outlives it. Thread: the user-interface
/// thread.
class RowAdder {
public:
    /// The fields that are given in every row; the others get their defaults. Raises
    /// `kErrorNotInCollection` for an unknown table or field, `kErrorReadOnly`.
    RowAdder(const Database& database, const QString& table, const QStringList& fields);
    RowAdder(const RowAdder&) = delete;
    RowAdder& operator=(const RowAdder&) = delete;
    ~RowAdder();

    /// Sets a field, 0-based among those given, of the row that is added next, converted as
    /// `Recordset::setValue` does and raising as that does. One that is not set is Null; a key that
    /// is Null is the database's to give.
    void set(int field, const QVariant& value);
    /// Longest text that a field takes, in characters; 0 where there is no limit.
    [[nodiscard]] int textSizeOf(int field) const;
    /// Adds the row; its key. Raises what writing raises.
    qint64 add();

private:
    std::shared_ptr<Connection> m_connection;
    QString m_table;
    std::vector<Column> m_columns; ///< of the fields
    std::unique_ptr<Cursor> m_insert;
};

} // namespace yrw::dao
