#include "platform/dao/RowAdder.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/FieldValue.h"

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.RowAdder");

} // namespace

RowAdder::RowAdder(const Database& database, const QString& table, const QStringList& fields)
    : m_connection(database.connection().shared_from_this()), m_table(table) {
    if (m_connection->isReadOnly()) {
        throw AutomationError(kErrorReadOnly, kSource,
                              QStringLiteral("'%1' cannot be changed.").arg(table));
    }
    const std::shared_ptr<const Source> source = m_connection->schema().source(table);
    QStringList names;
    for (const QString& field : fields) {
        const int place = source->indexOf(field);
        if (place < 0) {
            throw AutomationError(kErrorNotInCollection, kSource,
                                  QStringLiteral("There is no field '%1'.").arg(field));
        }
        m_columns.push_back(source->columns[size_t(place)]);
        names += quotedName(m_columns.back().name);
    }
    const QStringList places(names.size(), QStringLiteral("?"));
    const QString values =
        names.isEmpty()
            ? QStringLiteral(" DEFAULT VALUES")
            : QString(u" (" + names.join(u',') + u") VALUES (" + places.join(u',') + u')');
    m_insert = m_connection->prepare(u"INSERT INTO " + quotedName(table) + values);
}

RowAdder::~RowAdder() = default;

void RowAdder::set(int field, const QVariant& value) {
    const Column& column = m_columns.at(size_t(field));
    m_insert->bind(field + 1, column.type
                                  ? convertToField(value, {*column.type, column.size}, column.name)
                                  : value);
}

int RowAdder::textSizeOf(int field) const {
    return m_columns.at(size_t(field)).size;
}

qint64 RowAdder::add() {
    m_connection->requireOpen();
    m_insert->run();
    m_insert->forgetValues();
    m_connection->tableChanged(m_table);
    return m_connection->lastKey();
}

} // namespace yrw::dao
