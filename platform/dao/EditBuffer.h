#pragma once

#include "platform/dao/Query.h"

#include <vector>

namespace yrw::dao {

/// What is being written of one row: the values as they were read, and those that were set.
///
/// Lifetime: as long as its query. Thread: the user-interface thread.
class EditBuffer {
public:
    explicit EditBuffer(const Query& query) : m_query(query) {}

    [[nodiscard]] bool isOpen() const noexcept { return m_kind != Kind::None; }
    [[nodiscard]] bool isNewRow() const noexcept { return m_kind == Kind::Add; }
    [[nodiscard]] bool isUnchanged() const { return setColumns().empty(); }
    /// Begins a new row; every column holds its default or Null.
    void beginAdd();
    /// Begins to change a row with these values.
    void beginChange(const std::vector<QVariant>& values);
    void drop() noexcept { m_kind = Kind::None; }

    [[nodiscard]] QVariant value(int column) const;
    /// See `Recordset::setValue` and `Recordset::compareWith`.
    void set(int column, const QVariant& value);
    void compareWith(const ValueList& asRead, const QStringList& stamps);

    /// Writes the new row; its key.
    [[nodiscard]] qint64 insert(Connection& connection) const;
    /// Writes what was set into the row with a key, unless somebody else changed that meanwhile:
    /// see `Recordset::Update`.
    void update(Connection& connection, qint64 key);

private:
    enum class Kind { None, Add, Change };
    /// One column.
    struct Cell {
        QVariant before; ///< as read, or the default of a new row
        QVariant after;
        bool isSet = false;
        bool isStamp = false; ///< anybody may change it
    };

    [[nodiscard]] std::vector<int> setColumns() const;
    /// The columns that were set, as the base table names them.
    [[nodiscard]] QStringList setNames() const;
    void bindTo(Cursor& statement) const;
    void requireUnchanged(Connection& connection, qint64 key);

    const Query& m_query;
    Kind m_kind = Kind::None;
    std::vector<Cell> m_cells;
};

} // namespace yrw::dao
