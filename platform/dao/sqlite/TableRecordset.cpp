#include "platform/dao/sqlite/TableRecordset.h"

#include "platform/component/AutomationError.h"

#include <utility>

namespace yrw::dao {

TableRecordset::TableRecordset(SqliteDatabase& database, const Query& query, const QString& name,
                               int options)
    : RecordsetBase(database, query, name, RecordsetType::Table, options) {
    setIndex(QString());
    toEnd(false);
}

bool TableRecordset::AtBof() const {
    requireOpen();
    return m_state == State::Before || m_state == State::Empty;
}

bool TableRecordset::AtEof() const {
    requireOpen();
    return m_state == State::Behind || m_state == State::Empty;
}

void TableRecordset::standOn(qint64 key) {
    leaveRow();
    m_state = State::OnRow;
    m_key = key;
    m_reader.moveTo(key);
}

QString TableRecordset::tableSql() const {
    return u"SELECT " + query().source().key + u" FROM " + query().source().sql;
}

QString TableRecordset::orderBy(const QStringList& columns, bool descending) const {
    const QString direction = descending ? QStringLiteral(" DESC") : QString();
    QString terms;
    for (const QString& column : columns) {
        terms += quotedName(column) + direction + u", ";
    }
    return u" ORDER BY " + terms + query().source().key + direction + u" LIMIT 1";
}

bool TableRecordset::firstOf(const QString& sql, std::span<const QVariant> values, qint64& key) {
    connection().beginRead();
    Statement statement(connection().handle(), sql);
    for (size_t i = 0; i < values.size(); ++i) {
        statement.bind(int(i) + 1, values[i]);
    }
    if (!statement.step()) {
        return false;
    }
    key = statement.integer(0);
    return true;
}

void TableRecordset::toEnd(bool last) {
    requireOpen();
    leaveRow();
    qint64 key = 0;
    if (firstOf(tableSql() + orderBy(m_order->columns, last), {}, key)) {
        standOn(key);
    } else {
        m_state = State::Empty;
    }
}

void TableRecordset::MoveFirst() {
    toEnd(false);
}

void TableRecordset::MoveLast() {
    toEnd(true);
}

std::vector<QVariant> TableRecordset::placeInOrder() const {
    std::vector<QVariant> values;
    for (const QString& column : m_order->columns) {
        values.push_back(rowValue(FieldIndex(column)));
    }
    values.emplace_back(m_key);
    return values;
}

bool TableRecordset::neighbour(bool back, qint64& key) {
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
            where += quotedName(columns[qsizetype(i)]) + u" IS ? AND ";
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

void TableRecordset::step(bool back) {
    if (m_state == (back ? State::Behind : State::Before)) {
        toEnd(back);
        return;
    }
    if (m_state != State::OnRow && m_state != State::Deleted) {
        raiseNoRecord();
    }
    leaveRow();
    qint64 key = 0;
    if (neighbour(back, key)) {
        standOn(key);
    } else {
        m_state = back ? State::Before : State::Behind;
    }
}

void TableRecordset::MoveNext() {
    if (AtEof()) {
        raiseNoRecord();
    }
    step(false);
}

void TableRecordset::MovePrevious() {
    if (AtBof()) {
        raiseNoRecord();
    }
    step(true);
}

void TableRecordset::Move(qint64 rows) {
    requireOpen();
    const bool back = rows < 0;
    for (qint64 i = 0; i < qAbs(rows) && !(back ? AtBof() : AtEof()); ++i) {
        step(back);
    }
}

qint64 TableRecordset::RecordCount() const {
    requireOpen();
    connection().beginRead();
    return connection().scalar(u"SELECT count(*) FROM " + query().source().sql).toLongLong();
}

Bookmark TableRecordset::Bookmark() const {
    requireOpen();
    return yrw::dao::Bookmark(currentKey());
}

void TableRecordset::setBookmark(yrw::dao::Bookmark bookmark) {
    requireOpen();
    if (bookmark.isNull()) {
        raiseNotBookmarkable();
    }
    standOn(bookmark.place());
}

Bookmark TableRecordset::LastModified() const {
    requireOpen();
    if (m_modified < 0) {
        raiseNoRecord();
    }
    return yrw::dao::Bookmark(m_modified);
}

Ref<Recordset> TableRecordset::Clone() {
    requireOpen();
    Ref<TableRecordset> clone(new TableRecordset(database(), query(), Name(), options()));
    clone->setIndex(m_order->name);
    return clone;
}

QString TableRecordset::Index() const {
    requireOpen();
    return m_order->name;
}

void TableRecordset::setIndex(const QString& name) {
    requireOpen();
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
        order->columns = Schema(connection()).indexColumns(query().source().name, name);
    }
    m_orders.push_back(std::move(order));
    m_order = m_orders.back().get();
}

TableRecordset::Comparison TableRecordset::comparisonOf(QStringView text) {
    if (text == u"=") {
        return Comparison::Equal;
    }
    if (text == u">") {
        return Comparison::Greater;
    }
    if (text == u">=") {
        return Comparison::GreaterEqual;
    }
    if (text == u"<") {
        return Comparison::Less;
    }
    if (text == u"<=") {
        return Comparison::LessEqual;
    }
    throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Recordset"),
                          QStringLiteral("'%1' is no comparison of a seek.").arg(text));
}

QString TableRecordset::seekSql(const Order& order, Comparison comparison, size_t keys) const {
    static const std::array<QString, kComparisons> signs{u"="_qs, u">"_qs, u">="_qs, u"<"_qs,
                                                         u"<="_qs};
    QStringList names;
    QStringList places;
    for (size_t i = 0; i < keys; ++i) {
        names += order.columns.isEmpty() ? query().source().key
                                         : quotedName(order.columns[qsizetype(i)]);
        places += QStringLiteral("?");
    }
    const QString by =
        order.columns.isEmpty() ? QString() : u" INDEXED BY " + quotedName(order.name);
    const bool back = comparison == Comparison::Less || comparison == Comparison::LessEqual;
    const QString& sign = signs[size_t(comparison)];
    QString where;
    if (comparison == Comparison::Equal) {
        for (const QString& name : names) {
            where += (where.isEmpty() ? u""_qs : u" AND "_qs) + name + u" = ?";
        }
    } else {
        where = u'(' + names.join(u',') + u") " + sign + u" (" + places.join(u',') + u')';
    }
    return tableSql() + by + u" WHERE " + where + orderBy(order.columns, back);
}

TableRecordset::Seeker& TableRecordset::seeker(Comparison comparison, size_t keys) {
    auto& byCount = m_order->seekers[size_t(comparison)];
    if (byCount.size() <= keys) {
        byCount.resize(keys + 1);
    }
    Seeker& found = byCount[keys];
    if (found.statement.isEmpty()) {
        found.statement = Statement(connection().handle(), seekSql(*m_order, comparison, keys));
        found.keys.resize(keys);
    }
    return found;
}

void TableRecordset::Seek(QStringView comparison, std::span<const QVariant> keys) {
    requireOpen();
    const size_t most = m_order->columns.isEmpty() ? 1 : size_t(m_order->columns.size());
    if (keys.empty() || keys.size() > most) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("A seek takes one to %1 keys.").arg(most));
    }
    leaveRow();
    m_state = State::Nowhere;
    m_noMatch = true;
    connection().beginRead();
    Seeker& by = seeker(comparisonOf(comparison), keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        // Along a page of a grid only one key changes from row to row.
        if (by.keys[i] != keys[i] || keys[i].isNull() || by.keys[i].isNull()) {
            by.statement.bind(int(i) + 1, keys[i]);
            by.keys[i] = keys[i];
        }
    }
    if (by.statement.step()) {
        standOn(by.statement.integer(0));
        by.statement.reset();
        m_noMatch = false;
    }
}

bool TableRecordset::NoMatch() const {
    requireOpen();
    return m_noMatch;
}

QVariant TableRecordset::rowValue(int column) const {
    requireOpen();
    bool found = m_state == State::OnRow;
    QVariant value;
    if (found) {
        value = m_reader.value(connection(), query(), column, found);
    }
    if (!found) {
        raiseNoRecord();
    }
    return value;
}

qint64 TableRecordset::currentKey() const {
    if (m_state != State::OnRow) {
        raiseNoRecord();
    }
    return m_key;
}

void TableRecordset::rowChanged() {
    m_modified = m_key;
    m_reader.forget();
}

void TableRecordset::rowDeleted() {
    m_state = State::Deleted;
    m_reader.forget();
}

void TableRecordset::dropStatements() noexcept {
    m_reader.close();
    for (const auto& order : m_orders) {
        order->seekers = {};
    }
}

void TableRecordset::dropRows() noexcept {
    m_reader.close();
    m_orders.clear();
    m_order = nullptr;
}

} // namespace yrw::dao
