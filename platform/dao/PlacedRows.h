#pragma once

#include "platform/dao/RowReader.h"
#include "platform/dao/RowSet.h"
#include "platform/dao/Rows.h"

#include <memory>

namespace yrw::dao {

/// Rows that have their places from the start: a dynaset, which knows their keys and reads each row
/// when it is reached, or a snapshot, which has copies of them.
class PlacedRows final : public Rows {
public:
    enum class Kind { Keys, Copies };

    PlacedRows(Connection& connection, const Query& query, Kind kind);
    /// A second cursor over the same rows, before the first.
    PlacedRows(const PlacedRows& other, std::shared_ptr<RowSet> set);

    void releaseRead() noexcept override { m_reader.release(); }
    void dropStatements() noexcept override { m_reader.close(); }

    [[nodiscard]] bool atBof() const override;
    [[nodiscard]] bool atEof() const override;
    void toFirst() override { seekRow(0, 1); }
    void toLast() override { seekRow(m_set->size() - 1, -1); }
    void next() override { seekRow(m_place + 1, 1); }
    void previous() override { seekRow(m_place - 1, -1); }
    void move(qint64 rows) override;
    [[nodiscard]] qint64 count() const override { return m_set->count(); }
    [[nodiscard]] qint64 position() const override;
    void setPosition(qint64 position) override { standAt(m_set->placeAt(position)); }
    void refill() override;
    [[nodiscard]] Bookmark bookmark() const override;
    [[nodiscard]] qint64 placeOf(Bookmark bookmark) const override;
    void toPlace(qint64 place) override { standAt(place); }
    [[nodiscard]] Bookmark lastModified() const override;
    [[nodiscard]] std::unique_ptr<Rows> clone() const override;
    [[nodiscard]] QVariant value(int column) const override;
    [[nodiscard]] qint64 key() const override;
    void changed() override;
    void added(qint64 key) override;
    void deleted() override;

protected:
    void drop() noexcept override;

private:
    [[nodiscard]] bool isWithin() const noexcept;
    void requireRow() const;
    void standAt(qint64 place);
    /// To the next place in a direction whose row is still there.
    void seekRow(qint64 place, int direction);
    void fill();
    void readKeys();
    void copyRows();

    Kind m_kind;
    std::shared_ptr<RowSet> m_set;
    int m_keyItem; ///< column that shows the key, which needs no reading; -1 for none
    mutable RowReader m_reader;
    qint64 m_place = -1; ///< -1 before the first row, `size()` or more behind the last
    qint64 m_modified = -1;
};

} // namespace yrw::dao
