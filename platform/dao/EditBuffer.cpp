#include "platform/dao/EditBuffer.h"

#include "platform/clock/WallTime.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/ConflictError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/FieldValue.h"

#include <QDateTime>

#include <utility>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Recordset");

/// True when two readings of one column are the same value, also when one came through a query
/// that does not know the column's kind. Null and an empty text are different.
bool isSameValue(const QVariant& a, const QVariant& b) {
    if (a.isNull() || b.isNull()) {
        return a.isNull() && b.isNull();
    }
    if (a.typeId() == QMetaType::QDateTime && b.typeId() == QMetaType::QDateTime) {
        return isSameWallTime(a.toDateTime(), b.toDateTime());
    }
    if (a.typeId() == b.typeId()) {
        return a == b;
    }
    if (a.typeId() == QMetaType::Bool || b.typeId() == QMetaType::Bool) {
        return a.toBool() == b.toBool();
    }
    return a == b || a.toString() == b.toString();
}

} // namespace

void EditBuffer::beginAdd() {
    m_cells.assign(m_query.items().size(), Cell());
    for (size_t i = 0; i < m_cells.size(); ++i) {
        m_cells[i].before = m_query.items()[i].column.defaultValue;
    }
    m_kind = Kind::Add;
}

void EditBuffer::beginChange(const std::vector<QVariant>& values) {
    m_cells.assign(values.size(), Cell());
    for (size_t i = 0; i < values.size(); ++i) {
        m_cells[i].before = values[i];
    }
    m_kind = Kind::Change;
}

QVariant EditBuffer::value(int column) const {
    const Cell& cell = m_cells[size_t(column)];
    return cell.isSet ? cell.after : cell.before;
}

void EditBuffer::set(int column, const QVariant& value) {
    const Query::Item& target = m_query.item(column);
    if (!isOpen()) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("A field is set between AddNew or Edit and Update."));
    }
    const bool isKey = quotedName(target.column.baseColumn) == m_query.source().baseKey;
    if (target.column.baseColumn.isEmpty() || (isKey && m_kind == Kind::Change)) {
        throw AutomationError(kErrorReadOnly, kSource,
                              QStringLiteral("The field '%1' cannot be changed.").arg(target.name));
    }
    // What has no declared type takes anything.
    const std::optional<FieldType> type = target.column.type;
    QVariant converted =
        type ? convertToField(value, {*type, target.column.size}, target.name) : value;
    Cell& cell = m_cells[size_t(column)];
    cell.after = std::move(converted);
    cell.isSet = true;
}

void EditBuffer::compareWith(const ValueList& asRead, const QStringList& stamps) {
    if (m_kind != Kind::Change) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("Values are compared between Edit and Update."));
    }
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const QString& name = m_query.items()[i].name;
        if (const int known = asRead.indexOf(name); known >= 0) {
            m_cells[i].before = asRead.at(known).value;
        }
        m_cells[i].isStamp = stamps.contains(name, Qt::CaseInsensitive);
    }
}

std::vector<int> EditBuffer::setColumns() const {
    std::vector<int> columns;
    for (size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i].isSet) {
            columns.push_back(int(i));
        }
    }
    return columns;
}

QStringList EditBuffer::setNames() const {
    QStringList names;
    for (const int column : setColumns()) {
        names += quotedName(m_query.item(column).column.baseColumn);
    }
    return names;
}

void EditBuffer::bindTo(Cursor& statement) const {
    int position = 0;
    for (const int column : setColumns()) {
        statement.bind(++position, m_cells[size_t(column)].after);
    }
}

qint64 EditBuffer::insert(Connection& connection) const {
    const QStringList names = setNames();
    const QStringList places(names.size(), QStringLiteral("?"));
    const QString values =
        names.isEmpty()
            ? QStringLiteral(" DEFAULT VALUES")
            : QString(u" (" + names.join(u',') + u") VALUES (" + places.join(u',') + u')');
    Cursor& insert =
        connection.kept(u"INSERT INTO " + quotedName(m_query.source().baseTable) + values);
    bindTo(insert);
    insert.run();
    insert.forgetValues();
    return connection.lastKey();
}

void EditBuffer::requireUnchanged(Connection& connection, qint64 key) {
    const std::vector<int> columns = setColumns();
    Cursor& present = connection.kept(u"SELECT " + setNames().join(u',') + u" FROM " +
                                      quotedName(m_query.source().baseTable) + u" WHERE " +
                                      m_query.source().baseKey + u" = ?1");
    present.bind(1, key);
    if (!present.step()) {
        throw AutomationError(kErrorNoCurrentRecord, kSource,
                              QStringLiteral("The record was deleted by somebody else."));
    }
    ValueList conflicts;
    for (size_t i = 0; i < columns.size(); ++i) {
        const Query::Item& target = m_query.item(columns[i]);
        Cell& cell = m_cells[size_t(columns[i])];
        const QVariant stands = present.value(int(i), target.column.type);
        if (cell.isStamp || isSameValue(stands, cell.before) || isSameValue(stands, cell.after)) {
            continue;
        }
        conflicts.set(target.name, stands);
        // Who updates again has been told what stands there.
        cell.before = stands;
    }
    present.reset();
    if (!conflicts.isEmpty()) {
        throw ConflictError(kSource,
                            QStringLiteral("The field '%1' was changed by somebody else since it "
                                           "was read.")
                                .arg(conflicts.at(0).name),
                            conflicts);
    }
}

void EditBuffer::update(Connection& connection, qint64 key) {
    requireUnchanged(connection, key);
    const QStringList names = setNames();
    Cursor& update =
        connection.kept(u"UPDATE " + quotedName(m_query.source().baseTable) + u" SET " +
                        names.join(u" = ?,") + u" = ? WHERE " + m_query.source().baseKey + u" = ?");
    bindTo(update);
    update.bind(int(names.size()) + 1, key);
    update.run();
    update.forgetValues();
}

} // namespace yrw::dao
