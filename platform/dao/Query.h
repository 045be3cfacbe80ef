#pragma once

#include "platform/dao/Condition.h"
#include "platform/dao/Cursor.h"
#include "platform/dao/Schema.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace yrw::dao {

class Connection;

/// A named value that a statement is given; the name includes its sign.
struct Binding {
    QString name;
    QVariant value;
};

/// The rows that a recordset shows: a source, some of its columns, conditions and an order.
///
/// A value; copies share the source.
class Query {
public:
    struct Item {
        QString name;       ///< as the recordset shows it
        QString expression; ///< in the engine's language
        Column column;
    };

    /// All columns of a source.
    explicit Query(std::shared_ptr<const Source> source);
    /// A parsed selection over a source. Raises `kErrorNotInCollection` for an unknown column.
    Query(std::shared_ptr<const Source> source, const Selection& selection);

    [[nodiscard]] const Source& source() const noexcept { return *m_source; }
    [[nodiscard]] const std::vector<Item>& items() const noexcept { return m_items; }
    [[nodiscard]] bool isCount() const noexcept { return m_isCount; }
    /// Who wrote the text behind the statements.
    [[nodiscard]] SqlOrigin origin() const noexcept {
        return m_source->isStored ? SqlOrigin::Stored : SqlOrigin::Own;
    }
    /// True when every row has a key of its own.
    [[nodiscard]] bool hasKey() const noexcept { return !m_source->key.isEmpty() && !m_isCount; }

    /// An item by its number; raises `kErrorNotInCollection`.
    [[nodiscard]] const Item& item(int column) const;
    /// The item that is the key of the row; -1 when none is.
    [[nodiscard]] int keyItem() const;

    void addCondition(const Expression& condition);
    void setOrder(const std::vector<OrderTerm>& order);
    void setParameters(const Parameters& parameters);

    /// The text that leads the wanted order; the engine knows no language's order.
    struct LeadingText {
        QString expression; ///< in the engine's language
        bool descending = false;
    };
    [[nodiscard]] const std::optional<LeadingText>& leadingText() const noexcept {
        return m_leadingText;
    }

    /// True when the rows come in the order of their keys.
    [[nodiscard]] bool isInKeyOrder() const;

    /// Statements, bound: the rows, each with its key behind its items.
    [[nodiscard]] std::unique_ptr<Cursor> rows(const Connection& connection) const;
    /// The rows behind a key, in key order: some items, by number, and then the key.
    [[nodiscard]] std::unique_ptr<Cursor> rowsBehind(const Connection& connection, qint64 key,
                                                     const std::vector<int>& items) const;
    /// The items of the row that a statement of `rows` stands on.
    [[nodiscard]] std::vector<QVariant> itemsOf(const Cursor& statement) const;
    /// One row by its key (":yrwkey").
    [[nodiscard]] std::unique_ptr<Cursor> rowByKey(const Connection& connection) const;
    /// The keys in the engine's order, and behind each the leading text where there is one. The
    /// statement is one that the connection keeps.
    [[nodiscard]] Cursor& keys(Connection& connection) const;

private:
    [[nodiscard]] std::unique_ptr<Cursor> bound(const Connection& connection,
                                                const QString& sql) const;
    void bindTo(Cursor& statement) const;
    [[nodiscard]] QString itemList() const;
    [[nodiscard]] QString tail() const;
    [[nodiscard]] const Column& columnOf(const FieldReference& field) const;
    void addItem(const SelectItem& item);
    [[nodiscard]] QString condition(const Expression& expression);
    [[nodiscard]] QString operand(const Expression& expression);
    [[nodiscard]] QString comparison(const Expression& expression);
    [[nodiscard]] QString like(const Expression& expression);
    [[nodiscard]] QString joined(const Expression& expression, QStringView word);
    [[nodiscard]] QString placeFor(const QVariant& value);
    [[nodiscard]] QString listed(const QVariant& value);

    std::shared_ptr<const Source> m_source;
    std::vector<Item> m_items;
    QString m_where;
    QString m_order;
    std::optional<LeadingText> m_leadingText;
    std::vector<Binding> m_bindings;
    int m_literals = 0;
    bool m_isCount = false;
};

} // namespace yrw::dao
