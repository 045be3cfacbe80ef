#pragma once

#include "platform/dao/Condition.h"
#include "platform/dao/Types.h"
#include "platform/dao/sqlite/Statement.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace yrw::dao {

/// A column of a table, a view or a stored query.
struct Column {
    QString name;
    std::optional<FieldType> type; ///< nothing for an expression
    QString baseColumn;            ///< column of the base table; empty when it cannot be written
    QVariant defaultValue;
    int size = 0; ///< longest text in characters; 0 for no limit
};

/// What rows are read from: a table, a view, or a stored query with its parameters.
struct Source {
    QString name;
    QString sql; ///< what stands behind FROM, in the engine's language
    bool isTable = false;
    bool keepsOwnOrder = false; ///< the definition orders its rows
    bool isStored = false;      ///< `sql` is text out of the file
    std::vector<Column> columns;
    QString baseTable; ///< table that changes go to; empty when there is none
    QString baseKey;   ///< its key column in the engine's language
    QString key;       ///< the same key as a column of this source; empty when it has none

    [[nodiscard]] int indexOf(QStringView column) const noexcept;
};

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

    /// Statements, bound: the rows, and one row by its key (":yrwkey").
    [[nodiscard]] Statement rows(sqlite3* connection) const;
    /// The rows behind a key, in key order: some items, by number, and then the key.
    [[nodiscard]] Statement rowsBehind(sqlite3* connection, qint64 key,
                                       const std::vector<int>& items) const;
    [[nodiscard]] Statement rowByKey(sqlite3* connection) const;
    /// The text behind `rows`, for asking the engine how it would go about it.
    [[nodiscard]] QString rowsSql() const;
    /// Text of a statement that gives the keys in the engine's order, and behind each the leading
    /// text where there is one; to be bound by `bindTo`.
    [[nodiscard]] QString keysSql() const;
    void bindTo(Statement& statement) const;

private:
    [[nodiscard]] QString itemList() const;
    [[nodiscard]] QString tail() const;
    [[nodiscard]] const Column& columnOf(const FieldReference& field) const;
    void addItem(const SelectItem& item);
    [[nodiscard]] QString condition(const Expression& expression);
    [[nodiscard]] QString operand(const Expression& expression);
    [[nodiscard]] QString comparison(const Expression& expression);
    [[nodiscard]] QString like(const Expression& expression);
    [[nodiscard]] QString joined(const Expression& expression, QStringView word);
    [[nodiscard]] QString bound(const QVariant& value);
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
