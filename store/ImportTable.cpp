#include "store/ImportTable.h"

#include "store/Schema.h"

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");

} // namespace

ImportTable::ImportTable(dao::Database& target, const jet::JetTable& old, ImportedTable& report,
                         bool isDryRun)
    : m_rows(target.OpenRecordset(report.name, dao::RecordsetType::Table)), m_report(report),
      m_isDryRun(isDryRun), m_values(size_t(m_rows->FieldCount())),
      m_isGiven(size_t(m_rows->FieldCount())), m_key(m_rows->FieldIndex(kRecordID)) {
    std::vector<bool> isTaken(m_values.size());
    for (const QString& column : old.columns) {
        int place = m_rows->FieldIndex(column);
        if (place >= 0 && isTaken[size_t(place)]) {
            place = -1; // of two columns of one name, the first
        }
        if (place < 0) {
            report.remark(QStringLiteral("the field %1 is left out, the notes database has no such "
                                         "field")
                              .arg(column),
                          true, std::nullopt);
        } else {
            isTaken[size_t(place)] = true;
        }
        m_places.push_back(place);
        m_names.push_back(column);
    }
}

void ImportTable::take(const jet::JetRow& row) {
    std::fill(m_values.begin(), m_values.end(), QVariant());
    std::fill(m_isGiven.begin(), m_isGiven.end(), false);
    for (size_t i = 0; i < m_places.size() && i < row.size(); ++i) {
        if (m_places[i] >= 0) {
            m_values[size_t(m_places[i])] = row[i].value;
            m_isGiven[size_t(m_places[i])] = true;
        }
    }
    for (size_t i = 0; i < m_places.size() && i < row.size(); ++i) {
        if (row[i].state == jet::CellState::Cut) {
            remark(QStringLiteral("%1 is cut off").arg(m_names[i]), true);
        } else if (row[i].state == jet::CellState::Unreadable) {
            remark(QStringLiteral("%1 could not be read").arg(m_names[i]), true);
        }
    }
}

std::optional<qint64> ImportTable::oldKey() const {
    const QVariant key = value(kRecordID);
    return key.isNull() ? std::nullopt : std::optional(key.toLongLong());
}

QVariant ImportTable::value(QStringView field) const {
    const int place = m_rows->FieldIndex(field);
    return place < 0 ? QVariant() : m_values[size_t(place)];
}

void ImportTable::setValue(QStringView field, const QVariant& value) {
    if (const int place = m_rows->FieldIndex(field); place >= 0) {
        m_values[size_t(place)] = value;
        m_isGiven[size_t(place)] = true;
    }
}

void ImportTable::forgetKey() {
    if (m_key >= 0) {
        m_isGiven[size_t(m_key)] = false;
    }
}

void ImportTable::remark(const QString& text, bool isLoss) const {
    m_report.remark(text, isLoss, oldKey().value_or(0));
}

void ImportTable::setField(int column, const QVariant& value) {
    try {
        m_rows->setValue(column, value);
        return;
    } catch (const AutomationError& error) {
        const int size = m_rows->textSizeOf(column);
        if (error.number() == kErrorFieldTooSmall && size > 0) {
            m_rows->setValue(column, value.toString().left(size));
            remark(QStringLiteral("%1 is cut to %2 characters")
                       .arg(m_rows->FieldName(column))
                       .arg(size),
                   true);
            return;
        }
        if (error.number() != kErrorTypeMismatch) {
            throw;
        }
    }
    m_rows->setValue(column, QVariant());
    remark(QStringLiteral("%1 is no value of that field").arg(m_rows->FieldName(column)), true);
}

qint64 ImportTable::write() {
    m_rows->AddNew();
    for (size_t i = 0; i < m_values.size(); ++i) {
        if (m_isGiven[i] && (int(i) != m_key || !m_values[i].isNull())) {
            setField(int(i), m_values[i]);
        }
    }
    ++m_report.written;
    if (m_isDryRun) {
        m_rows->CancelUpdate();
        return --m_madeUp;
    }
    m_rows->Update();
    return m_rows->LastModified().place();
}

} // namespace yrw
