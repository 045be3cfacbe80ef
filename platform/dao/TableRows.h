#pragma once

#include "platform/dao/RowReader.h"
#include "platform/dao/Rows.h"

#include <array>
#include <memory>
#include <vector>

namespace yrw::dao {

/// A base table in the order of its key or of an index. Every move asks the engine for the next
/// row there is now, so rows that others add or delete are seen.
class TableRows final : public Rows {
public:
    TableRows(Connection& connection, const Query& query);

    void releaseRead() noexcept override { m_reader.release(); }
    void dropStatements() noexcept override;

    [[nodiscard]] bool atBof() const override;
    [[nodiscard]] bool atEof() const override;
    void toFirst() override { toEnd(false); }
    void toLast() override { toEnd(true); }
    void next() override { step(false); }
    void previous() override { step(true); }
    void move(qint64 rows) override;
    [[nodiscard]] qint64 count() const override;
    void refill() override { toFirst(); }
    [[nodiscard]] Bookmark bookmark() const override { return Bookmark(key()); }
    [[nodiscard]] qint64 placeOf(Bookmark bookmark) const override { return bookmark.place(); }
    void toPlace(qint64 place) override { standOn(place); }
    [[nodiscard]] Bookmark lastModified() const override { return Bookmark(m_modified); }
    [[nodiscard]] std::unique_ptr<Rows> clone() const override;
    void setIndex(const QString& name) override;
    void seek(QStringView comparison, std::span<const QVariant> keys) override;
    [[nodiscard]] bool noMatch() const override { return m_noMatch; }
    [[nodiscard]] QVariant value(int column) const override;
    [[nodiscard]] qint64 key() const override;
    void changed() override;
    void added(qint64 key) override { m_modified = key; }
    void deleting() override { m_deleted = placeInOrder(); }
    void deleted() override;

protected:
    void drop() noexcept override;

private:
    enum class State { Empty, Before, OnRow, Deleted, Behind, Nowhere };
    enum class Comparison { Equal, Greater, GreaterEqual, Less, LessEqual };
    static constexpr std::array<QStringView, 5> kSigns{u"=", u">", u">=", u"<", u"<="};

    /// A prepared seek, with the keys it is bound to at present.
    struct Seeker {
        std::unique_ptr<Cursor> statement;
        std::vector<QVariant> keys;
    };
    /// An index that was selected once, with its seeks.
    struct Order {
        QString name;
        QStringList columns;                                    ///< empty for key order
        std::array<std::vector<Seeker>, kSigns.size()> seekers; ///< by comparison and key count
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
