#pragma once

#include "platform/dao/Connection.h"
#include "platform/dao/Query.h"

#include <vector>

namespace yrw::dao {

/// Raises `kErrorNoCurrentRecord`.
[[noreturn]] void raiseNoRecord();

/// Reads one row at a time by its key, a column when it is asked for and only once.
///
/// While the connection's read transaction lasts the statement stays on the row, so that a column
/// nobody asks for is never fetched. Where every read stands alone the row's narrow columns are
/// kept at once and long ones are fetched by themselves.
class RowReader {
public:
    /// Forgets the row read so far; the next `value` reads the row with this key.
    void moveTo(qint64 key) noexcept;
    /// Reads the row now; false when it is gone.
    bool load(Connection& connection, const Query& query);
    /// Value of a column; raises `kErrorNoCurrentRecord` when the row is gone.
    [[nodiscard]] QVariant value(Connection& connection, const Query& query, int column);
    /// Forgets values but not the key: the row was written.
    void forget() noexcept;
    /// Lets go of an active statement.
    void release() noexcept {
        if (m_statement) {
            m_statement->reset();
        }
    }
    /// Gives the statement up.
    void close() noexcept { m_statement.reset(); }

private:
    void keepNarrow(const Query& query);

    std::unique_ptr<Cursor> m_statement;
    int m_keyPosition = 0;
    qint64 m_key = 0;
    struct Cell {
        QVariant value;
        bool known = false;
    };
    std::vector<Cell> m_cells;
};

} // namespace yrw::dao
