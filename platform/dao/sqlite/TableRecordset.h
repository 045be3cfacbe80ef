#pragma once

#include "platform/dao/sqlite/RecordsetBase.h"
#include "platform/dao/sqlite/RowReader.h"

#include <array>
#include <memory>
#include <vector>

namespace yrw::dao {

/// A base table in the order of its key or of an index. Every move asks the engine for the next
/// row there is now, so rows that others add or delete are seen.
class TableRecordset final : public RecordsetBase {
public:
    TableRecordset(SqliteDatabase& database, const Query& query, const QString& name, int options);

    [[nodiscard]] bool AtBof() const override;
    [[nodiscard]] bool AtEof() const override;
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override;
    void MovePrevious() override;
    void Move(qint64 rows) override;
    [[nodiscard]] qint64 RecordCount() const override;
    [[nodiscard]] yrw::dao::Bookmark Bookmark() const override;
    void setBookmark(yrw::dao::Bookmark bookmark) override;
    [[nodiscard]] yrw::dao::Bookmark LastModified() const override;
    [[nodiscard]] Ref<Recordset> Clone() override;
    [[nodiscard]] QString Index() const override;
    void setIndex(const QString& name) override;
    void Seek(QStringView comparison, std::span<const QVariant> keys) override;
    using Recordset::Seek;
    [[nodiscard]] bool NoMatch() const override;
    void Requery() override { MoveFirst(); }

protected:
    [[nodiscard]] QVariant rowValue(int column) const override;
    [[nodiscard]] qint64 currentKey() const override;
    void rowChanged() override;
    void rowAdded(qint64 key) override { m_modified = key; }
    void rowDeleting() override { m_deleted = placeInOrder(); }
    void rowDeleted() override;
    void dropRows() noexcept override;
    void releaseRead() noexcept override { m_reader.release(); }
    void dropStatements() noexcept override;

private:
    enum class State { Empty, Before, OnRow, Deleted, Behind, Nowhere };
    enum class Comparison { Equal, Greater, GreaterEqual, Less, LessEqual };
    static constexpr size_t kComparisons = 5;

    /// A prepared seek, with the keys it is bound to at present.
    struct Seeker {
        Statement statement;
        std::vector<QVariant> keys;
    };
    /// An index that was selected once, with its seeks.
    struct Order {
        QString name;
        QStringList columns;                                   ///< empty for key order
        std::array<std::vector<Seeker>, kComparisons> seekers; ///< by comparison and key count
    };

    static Comparison comparisonOf(QStringView text);
    [[nodiscard]] QString seekSql(const Order& order, Comparison comparison, size_t keys) const;
    [[nodiscard]] QString orderBy(const QStringList& columns, bool descending) const;
    [[nodiscard]] QString tableSql() const;
    Seeker& seeker(Comparison comparison, size_t keys);
    void standOn(qint64 key);
    void toEnd(bool last);
    void step(bool back);
    /// The row's values in the columns of the order, its key last.
    [[nodiscard]] std::vector<QVariant> placeInOrder() const;
    [[nodiscard]] bool neighbour(bool back, qint64& key);
    [[nodiscard]] bool firstOf(const QString& sql, std::span<const QVariant> values, qint64& key);

    std::vector<std::unique_ptr<Order>> m_orders;
    Order* m_order = nullptr;
    mutable RowReader m_reader;
    State m_state = State::Empty;
    qint64 m_key = 0;
    std::vector<QVariant> m_deleted; ///< where the row stood that was deleted under the cursor
    qint64 m_modified = -1;
    bool m_noMatch = false;
};

} // namespace yrw::dao
