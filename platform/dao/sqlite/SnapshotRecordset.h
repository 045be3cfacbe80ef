#pragma once

#include "platform/dao/sqlite/BookmarkSpace.h"
#include "platform/dao/sqlite/RecordsetBase.h"

#include <memory>
#include <vector>

namespace yrw::dao {

/// A snapshot: a copy of the rows as they were, shared with clones.
class SnapshotRecordset final : public RecordsetBase {
public:
    /// The rows, with the bookmarks that belong to them.
    struct Rows {
        std::vector<std::vector<QVariant>> values;
        BookmarkSpace places;
    };

    SnapshotRecordset(SqliteDatabase& database, const Query& query, const QString& name,
                      int options);
    SnapshotRecordset(const SnapshotRecordset& other, std::shared_ptr<const Rows> rows);

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
    [[nodiscard]] Ref<Recordset> Clone() override;
    void Requery() override;

protected:
    [[nodiscard]] QVariant rowValue(int column) const override;
    [[nodiscard]] qint64 currentKey() const override { raiseInvalid("changes"); }
    void dropRows() noexcept override { m_rows.reset(); }
    void releaseRead() noexcept override {}

private:
    [[nodiscard]] qint64 size() const noexcept { return qint64(m_rows->values.size()); }
    [[nodiscard]] bool onRow() const noexcept { return m_place >= 0 && m_place < size(); }
    void fill();

    std::shared_ptr<const Rows> m_rows;
    qint64 m_place = 0;
};

} // namespace yrw::dao
