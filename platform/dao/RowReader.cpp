#include "platform/dao/RowReader.h"

#include "platform/component/AutomationError.h"

namespace yrw::dao {

namespace {

bool isWide(const Query::Item& item) {
    return item.column.type == FieldType::Memo || item.column.type == FieldType::Binary;
}

} // namespace

void raiseNoRecord() {
    throw AutomationError(kErrorNoCurrentRecord, QStringLiteral("YRW.Recordset"),
                          QStringLiteral("There is no current record."));
}

void RowReader::moveTo(qint64 key) noexcept {
    m_key = key;
    forget();
}

void RowReader::forget() noexcept {
    release();
    for (Cell& cell : m_cells) {
        cell.known = false;
    }
}

bool RowReader::load(Connection& connection, const Query& query) {
    const bool lasting = connection.beginRead();
    if (!m_statement) {
        m_statement = query.rowByKey(connection);
        m_keyPosition = m_statement->position(QStringLiteral(":yrwkey"));
        m_cells.resize(query.items().size());
    }
    m_statement->reset();
    m_statement->bind(m_keyPosition, m_key);
    if (!m_statement->step()) {
        return false;
    }
    if (!lasting) {
        keepNarrow(query);
        m_statement->reset();
    }
    return true;
}

void RowReader::keepNarrow(const Query& query) {
    for (size_t i = 0; i < m_cells.size(); ++i) {
        if (!m_cells[i].known && !isWide(query.items()[i])) {
            m_cells[i] = {m_statement->value(int(i), query.items()[i].column.type), true};
        }
    }
}

QVariant RowReader::value(Connection& connection, const Query& query, int column) {
    const auto index = size_t(column);
    if (index < m_cells.size() && m_cells[index].known) {
        return m_cells[index].value;
    }
    const bool alreadyThere = m_statement && m_statement->hasRow();
    if (!alreadyThere && !load(connection, query)) {
        raiseNoRecord();
    }
    Cell& cell = m_cells[index];
    if (cell.known) {
        return cell.value;
    }
    const bool isAlone = !m_statement->hasRow(); // a long column where reads stand alone
    if (isAlone) {
        m_statement->bind(m_keyPosition, m_key);
        if (!m_statement->step()) {
            raiseNoRecord();
        }
    }
    cell = {m_statement->value(column, query.items()[index].column.type), true};
    if (isAlone) {
        m_statement->reset();
    }
    return cell.value;
}

} // namespace yrw::dao
