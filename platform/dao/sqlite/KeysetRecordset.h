#pragma once

#include "platform/dao/sqlite/BookmarkSpace.h"
#include "platform/dao/sqlite/RecordsetBase.h"
#include "platform/dao/sqlite/RowReader.h"

#include <memory>
#include <vector>

namespace yrw::dao {

/// The keys of a dynaset, shared with its clones. Positions are 0-based places in the order of the
/// keys and never change; rows that are gone are passed over and not counted.
class Keyset {
public:
    explicit Keyset(std::vector<qint64> keys);

    [[nodiscard]] qint64 size() const noexcept { return qint64(m_keys.size()); }
    [[nodiscard]] qint64 count() const noexcept { return size() - qint64(m_gone.size()); }
    [[nodiscard]] qint64 key(qint64 place) const { return m_keys[size_t(place)]; }
    [[nodiscard]] bool isGone(qint64 place) const noexcept;
    void markGone(qint64 place);
    /// Adds a key behind the last; returns its place.
    qint64 append(qint64 key);
    /// 0-based position of a place among the rows that are there, and the other way round.
    [[nodiscard]] qint64 positionOf(qint64 place) const noexcept;
    [[nodiscard]] qint64 placeAt(qint64 position) const noexcept;

    /// Bookmark of a place, and the place of a bookmark; -1 for one of another set.
    [[nodiscard]] Bookmark bookmark(qint64 place) const noexcept;
    [[nodiscard]] qint64 place(Bookmark bookmark) const noexcept;

private:
    std::vector<qint64> m_keys;
    std::vector<qint64> m_gone; ///< places, ascending
    BookmarkSpace m_space;
};

/// A dynaset: a fixed set of keys, each row read when it is reached.
class KeysetRecordset final : public RecordsetBase {
public:
    KeysetRecordset(SqliteDatabase& database, const Query& query, const QString& name, int options);
    /// A clone over the same keys.
    KeysetRecordset(const KeysetRecordset& other, std::shared_ptr<Keyset> keys);

    [[nodiscard]] bool AtBof() const override;
    [[nodiscard]] bool AtEof() const override;
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override;
    void MovePrevious() override;
    void Move(qint64 rows) override;
    [[nodiscard]] qint64 RecordCount() const override;
    [[nodiscard]] qint64 AbsolutePosition() const override;
    void setAbsolutePosition(qint64 position) override;
    [[nodiscard]] yrw::dao::Bookmark Bookmark() const override;
    void setBookmark(yrw::dao::Bookmark bookmark) override;
    [[nodiscard]] yrw::dao::Bookmark LastModified() const override;
    [[nodiscard]] Ref<Recordset> Clone() override;
    void Requery() override;

protected:
    [[nodiscard]] QVariant rowValue(int column) const override;
    [[nodiscard]] qint64 currentKey() const override;
    void rowChanged() override;
    void rowAdded(qint64 key) override;
    void rowDeleted() override;
    void dropRows() noexcept override;
    void releaseRead() noexcept override { m_reader.release(); }
    void dropStatements() noexcept override { m_reader.close(); }

private:
    [[nodiscard]] bool onRow() const noexcept;
    void standAt(qint64 place);
    /// To the next place in a direction whose row is still there.
    void seekRow(qint64 place, int direction);
    void fill();

    std::shared_ptr<Keyset> m_keys;
    int m_keyItem; ///< column that shows the key, which needs no reading; -1 for none
    mutable RowReader m_reader;
    qint64 m_place = -1; ///< -1 before the first row, `size()` or more behind the last
    qint64 m_modified = -1;
};

} // namespace yrw::dao
