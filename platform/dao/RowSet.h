#pragma once

#include "platform/dao/Types.h"

#include <vector>

namespace yrw::dao {

/// The rows that a recordset and its clones share: keys, or copies of the rows. A place is the
/// 0-based number of a row in this order and never changes; rows that are gone are passed over and
/// not counted.
class RowSet {
public:
    using Row = std::vector<QVariant>;

    explicit RowSet(std::vector<qint64> keys);
    explicit RowSet(std::vector<Row> copies);

    [[nodiscard]] qint64 size() const noexcept {
        return qint64(m_keys.size()) + qint64(m_copies.size());
    }
    [[nodiscard]] qint64 count() const noexcept { return size() - qint64(m_gone.size()); }
    [[nodiscard]] qint64 key(qint64 place) const { return m_keys[size_t(place)]; }
    [[nodiscard]] const Row& copy(qint64 place) const { return m_copies[size_t(place)]; }
    [[nodiscard]] bool isGone(qint64 place) const noexcept;
    void markGone(qint64 place);
    /// Adds a key behind the last; returns its place.
    qint64 append(qint64 key);
    /// 0-based position of a place among the rows that are there, and the other way round.
    [[nodiscard]] qint64 positionOf(qint64 place) const noexcept;
    [[nodiscard]] qint64 placeAt(qint64 position) const noexcept;

    /// Bookmark of a place below 2^40, and the place of a bookmark; -1 for a null one and for one
    /// of another set.
    [[nodiscard]] Bookmark bookmark(qint64 place) const noexcept;
    [[nodiscard]] qint64 place(Bookmark bookmark) const noexcept;

private:
    std::vector<qint64> m_keys;
    std::vector<Row> m_copies;
    std::vector<qint64> m_gone; ///< places, ascending
    qint64 m_tag;               ///< in every bookmark of the set
};

} // namespace yrw::dao
