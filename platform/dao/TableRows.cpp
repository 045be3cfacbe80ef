#include "platform/dao/TableRows.h"

#include "platform/component/AutomationError.h"

#include <algorithm>
#include <utility>

namespace yrw::dao {

TableRows::TableRows(Connection& connection, const Query& query) : Rows(connection, query) {
    setIndex(QString());
    toFirst();
}

bool TableRows::atBof() const {
    return m_state == State::Before || m_state == State::Empty;
}

bool TableRows::atEof() const {
    return m_state == State::Behind || m_state == State::Empty;
}

void TableRows::standOn(qint64 key) {
    m_state = State::OnRow;
    m_key = key;
    m_reader.moveTo(key);
}

QString TableRows::tableSql() const {
    return u"SELECT " + query().source().key + u" FROM " + query().source().sql;
}

QString TableRows::orderBy(const QStringList& columns, bool descending) const {
    const QString direction = descending ? QStringLiteral(" DESC") : QString();
    QString terms;
    for (const QString& column : columns) {
        terms += quotedName(column) + direction + u", ";
    }
    return u" ORDER BY " + terms + query().source().key + direction + u" LIMIT 1";
}

bool TableRows::firstOf(const QString& sql, std::span<const QVariant> values, qint64& key) {
    connection().beginRead();
    const auto statement = connection().prepare(sql);
    for (size_t i = 0; i < values.size(); ++i) {
        statement->bind(int(i) + 1, values[i]);
    }
    if (!statement->step()) {
        return false;
    }
    key = statement->integer(0);
    return true;
}

void TableRows::toEnd(bool last) {
    qint64 key = 0;
    if (firstOf(tableSql() + orderBy(m_order->columns, last), {}, key)) {
        standOn(key);
    } else {
        m_state = State::Empty;
    }
}

std::vector<QVariant> TableRows::placeInOrder() const {
    std::vector<QVariant> values;
    for (const QString& column : m_order->columns) {
        values.push_back(value(query().source().indexOf(column)));
    }
    values.emplace_back(m_key);
    return values;
}

bool TableRows::neighbour(bool back, qint64& key) {
    // Behind a row with values (a, b, key) come those with the same a and b and a greater key, then
    // the same a and a greater b, then a greater a. Null stands before every value.
    const QStringList& columns = m_order->columns;
    const std::vector<QVariant> values = m_state == State::Deleted ? m_deleted : placeInOrder();
    for (size_t depth = values.size(); depth-- > 0;) {
        const QString last = depth < size_t(columns.size()) ? quotedName(columns[qsizetype(depth)])
                                                            : query().source().key;
        if (back && values[depth].isNull()) {
            continue;
        }
        QString where = u" WHERE "_qs;
        for (size_t i = 0; i < depth; ++i) {
            where += quotedName(columns[qsizetype(i)]) + u" IS NOT DISTINCT FROM ? AND ";
        }
        const size_t bound = values[depth].isNull() ? depth : depth + 1;
        if (bound == depth) {
            where += last + u" IS NOT NULL";
        } else if (back) {
            where += u'(' + last + u" < ? OR " + last + u" IS NULL)";
        } else {
            where += last + u" > ?";
        }
        if (firstOf(tableSql() + where + orderBy(columns, back), std::span(values).first(bound),
                    key)) {
            return true;
        }
    }
    return false;
}

void TableRows::step(bool back) {
    if (m_state == (back ? State::Behind : State::Before)) {
        toEnd(back);
        return;
    }
    if (m_state != State::OnRow && m_state != State::Deleted) {
        raiseNoRecord();
    }
    qint64 key = 0;
    if (neighbour(back, key)) {
        standOn(key);
    } else {
        m_state = back ? State::Before : State::Behind;
    }
}

void TableRows::move(qint64 rows) {
    const bool back = rows < 0;
    for (qint64 i = 0; i < qAbs(rows) && !(back ? atBof() : atEof()); ++i) {
        step(back);
    }
}

qint64 TableRows::count() const {
    connection().beginRead();
    return connection().scalar(u"SELECT count(*) FROM " + query().source().sql).toLongLong();
}

std::unique_ptr<Rows> TableRows::clone() const {
    auto clone = std::make_unique<TableRows>(connection(), query());
    clone->setIndex(m_order->name);
    return clone;
}

void TableRows::setIndex(const QString& name) {
    if (m_order != nullptr && m_order->name == name) {
        return;
    }
    for (const auto& order : m_orders) {
        if (order->name.compare(name, Qt::CaseInsensitive) == 0) {
            m_order = order.get();
            return;
        }
    }
    auto order = std::make_unique<Order>();
    order->name = name;
    if (!name.isEmpty()) {
        order->columns = connection().schema().indexColumns(query().source().name, name);
    }
    m_orders.push_back(std::move(order));
    m_order = m_orders.back().get();
}

TableRows::Comparison TableRows::comparisonOf(QStringView text) {
    const auto found = std::find(kSigns.begin(), kSigns.end(), text);
    if (found == kSigns.end()) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("'%1' is no comparison of a seek.").arg(text));
    }
    return Comparison(found - kSigns.begin());
}

QString TableRows::seekSql(const Order& order, Comparison comparison, size_t keys) const {
    const QStringList places(qsizetype(keys), QStringLiteral("?"));
    QStringList names;
    for (size_t i = 0; i < keys; ++i) {
        names += order.columns.isEmpty() ? query().source().key
                                         : quotedName(order.columns[qsizetype(i)]);
    }
    const QString by = order.columns.isEmpty() ? QString() : connection().indexHint(order.name);
    const bool back = comparison == Comparison::Less || comparison == Comparison::LessEqual;
    return tableSql() + by + u" WHERE (" + names.join(u',') + u") " + kSigns[size_t(comparison)] +
           u" (" + places.join(u',') + u')' + orderBy(order.columns, back);
}

TableRows::Seeker& TableRows::seeker(Comparison comparison, size_t keys) {
    auto& byCount = m_order->seekers[size_t(comparison)];
    if (byCount.size() <= keys) {
        byCount.resize(keys + 1);
    }
    Seeker& found = byCount[keys];
    if (!found.statement) {
        found.statement = connection().prepare(seekSql(*m_order, comparison, keys));
        found.keys.resize(keys);
    }
    return found;
}

void TableRows::seek(QStringView comparison, std::span<const QVariant> keys) {
    const size_t most = m_order->columns.isEmpty() ? 1 : size_t(m_order->columns.size());
    if (keys.empty() || keys.size() > most) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("A seek takes one to %1 keys.").arg(most));
    }
    m_state = State::Nowhere;
    m_noMatch = true;
    connection().beginRead();
    Seeker& by = seeker(comparisonOf(comparison), keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        // Along a page of a grid only one key changes from row to row.
        if (by.keys[i] != keys[i] || keys[i].isNull() || by.keys[i].isNull()) {
            by.statement->bind(int(i) + 1, keys[i]);
            by.keys[i] = keys[i];
        }
    }
    if (by.statement->step()) {
        standOn(by.statement->integer(0));
        by.statement->reset();
        m_noMatch = false;
    }
}

QVariant TableRows::value(int column) const {
    static_cast<void>(key());
    return m_reader.value(connection(), query(), column);
}

qint64 TableRows::key() const {
    if (m_state != State::OnRow) {
        raiseNoRecord();
    }
    return m_key;
}

void TableRows::changed() {
    m_modified = m_key;
    m_reader.forget();
}

void TableRows::deleted() {
    m_state = State::Deleted;
    m_reader.forget();
}

void TableRows::dropStatements() noexcept {
    m_reader.close();
    for (const auto& order : m_orders) {
        order->seekers = {};
    }
}

void TableRows::drop() noexcept {
    m_reader.close();
    m_orders.clear();
    m_order = nullptr;
}

} // namespace yrw::dao
