#include "store/ImportTable.h"

#include "store/Schema.h"

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");

} // namespace

ImportTable::ImportTable(dao::Database& target, const jet::JetTable& old, ImportedTable& report,
                         bool isDryRun)
    : m_report(report), m_isDryRun(isDryRun), m_columns(old.columns) {
    const Ref<dao::Recordset> table =
        target.OpenRecordset(report.name, dao::RecordsetType::Table, dao::kReadOnlyOption);
    if (table->FieldIndex(kRecordID) >= 0) {
        m_fields += kRecordID;
    }
    const bool hasKey = !m_fields.isEmpty();
    for (const QString& column : old.columns) {
        const int place = table->FieldIndex(column);
        const QString name = place < 0 ? QString() : table->FieldName(place);
        m_places.push_back(-1);
        if (hasKey && name == kRecordID) {
            m_places.back() = 0;
        } else if (place >= 0 && !m_fields.contains(name)) {
            m_places.back() = int(m_fields.size());
            m_fields += name;
        } else {
            report.remark(QStringLiteral("the field %1 is left out, the notes database has no such "
                                         "field")
                              .arg(column),
                          true, std::nullopt);
        }
    }
    m_values.resize(size_t(m_fields.size()));
    m_rows = std::make_unique<dao::RowAdder>(target, report.name, m_fields);
}

void ImportTable::take(const jet::JetRow& row) {
    std::fill(m_values.begin(), m_values.end(), QVariant());
    bool isWhole = true;
    for (size_t i = 0; i < m_places.size() && i < row.size(); ++i) {
        if (m_places[i] >= 0) {
            m_values[size_t(m_places[i])] = row[i].value;
        }
        isWhole = isWhole && row[i].state <= jet::CellState::Value;
    }
    const QVariant key = value(kRecordID);
    m_oldKey = key.isNull() ? std::nullopt : std::optional(key.toLongLong());
    for (size_t i = 0; !isWhole && i < m_places.size() && i < row.size(); ++i) {
        const QString& column = m_columns[qsizetype(i)];
        if (row[i].state == jet::CellState::Cut) {
            remark(QStringLiteral("%1 is cut off").arg(column), true);
        } else if (row[i].state == jet::CellState::Unreadable) {
            remark(QStringLiteral("%1 could not be read").arg(column), true);
        }
    }
}

int ImportTable::placeOf(QStringView field) const {
    for (qsizetype i = 0; i < m_fields.size(); ++i) {
        if (m_fields[i].size() == field.size() &&
            field.compare(m_fields[i], Qt::CaseInsensitive) == 0) {
            return int(i);
        }
    }
    return -1;
}

QVariant ImportTable::value(QStringView field) const {
    const int place = placeOf(field);
    return place < 0 ? QVariant() : m_values[size_t(place)];
}

void ImportTable::setValue(QStringView field, const QVariant& value) {
    if (const int place = placeOf(field); place >= 0) {
        m_values[size_t(place)] = value;
    }
}

void ImportTable::forgetKey() {
    setValue(kRecordID, QVariant());
}

void ImportTable::remark(const QString& text, bool isLoss) const {
    m_report.remark(text, isLoss, m_oldKey.value_or(0));
}

void ImportTable::setField(int field, const QVariant& value) {
    try {
        m_rows->set(field, value);
        return;
    } catch (const AutomationError& error) {
        const int size = m_rows->textSizeOf(field);
        if (error.number() == kErrorFieldTooSmall && size > 0) {
            m_rows->set(field, value.toString().left(size));
            remark(QStringLiteral("%1 is cut to %2 characters").arg(m_fields[field]).arg(size),
                   true);
            return;
        }
        if (error.number() != kErrorTypeMismatch) {
            throw;
        }
    }
    m_rows->set(field, QVariant());
    remark(QStringLiteral("%1 is no value of that field").arg(m_fields[field]), true);
}

qint64 ImportTable::write() {
    for (size_t i = 0; i < m_values.size(); ++i) {
        setField(int(i), m_values[i]);
    }
    ++m_report.written;
    return m_isDryRun ? --m_madeUp : m_rows->add();
}

} // namespace yrw
