#include "platform/controls/GridRows.h"

#include <QDateTime>

namespace yrw {

namespace {

const QString kDateFormat = QStringLiteral("dd/MM/yyyy HH:mm");

std::optional<QVariant> booleanOf(const QString& text) {
    const QString folded = text.toLower();
    for (const char* word : {"yes", "y", "true", "1", "-1"}) {
        if (folded == QLatin1String(word)) {
            return QVariant(true);
        }
    }
    for (const char* word : {"no", "n", "false", "0"}) {
        if (folded == QLatin1String(word)) {
            return QVariant(false);
        }
    }
    return std::nullopt;
}

std::optional<QVariant> dateOf(const QString& text) {
    for (const char* format :
         {"dd/MM/yyyy HH:mm", "d/M/yyyy H:mm", "yyyy-MM-dd HH:mm", "yyyy-MM-dd HH:mm:ss"}) {
        const QDateTime read = QDateTime::fromString(text, QLatin1String(format));
        if (read.isValid()) {
            return QVariant(read);
        }
    }
    for (const char* format : {"dd/MM/yyyy", "d/M/yyyy", "yyyy-MM-dd"}) {
        const QDate read = QDate::fromString(text, QLatin1String(format));
        if (read.isValid()) {
            return QVariant(read.startOfDay());
        }
    }
    return std::nullopt;
}

template <class Number>
std::optional<QVariant> numberOf(bool fits, Number number) {
    return fits ? std::optional<QVariant>(QVariant::fromValue(number)) : std::nullopt;
}

} // namespace

QString gridText(const QVariant& value, int decimals) {
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return value.toDateTime().toString(kDateFormat);
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("Yes") : QStringLiteral("No");
    case QMetaType::Double:
        return decimals < 0 ? QString::number(value.toDouble(), 'g', 15)
                            : QString::number(value.toDouble(), 'f', decimals);
    case QMetaType::QByteArray:
        return value.isNull() ? QString() : QStringLiteral("(binary)");
    default:
        break;
    }
    // A cell shows one line.
    return value.toString().replace(u'\n', u' ').replace(u'\r', u' ');
}

std::optional<QVariant> gridValue(const QString& text, dao::FieldType type) {
    const bool isText = type == dao::FieldType::Text || type == dao::FieldType::Memo;
    if (isText) {
        return text.isEmpty() ? QVariant() : QVariant(text);
    }
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return QVariant();
    }
    bool fits = false;
    switch (type) {
    case dao::FieldType::Boolean:
        return booleanOf(trimmed);
    case dao::FieldType::Integer: {
        const int number = trimmed.toShort(&fits);
        return numberOf(fits, number);
    }
    case dao::FieldType::Long: {
        const qint64 number = trimmed.toInt(&fits);
        return numberOf(fits, number);
    }
    case dao::FieldType::Double: {
        const double number = trimmed.toDouble(&fits);
        return numberOf(fits, number);
    }
    case dao::FieldType::Date:
        return dateOf(trimmed);
    default:
        return std::nullopt;
    }
}

void GridRows::setRecordset(const Ref<dao::Recordset>& recordset) {
    cancel();
    if (m_clone && m_clone->isOpen()) {
        m_clone->Close();
    }
    m_clone.reset();
    m_recordset = recordset;
    m_count = 0;
    m_selected = -1;
    if (m_recordset && m_recordset->isOpen()) {
        m_clone = m_recordset->Clone();
        m_count = m_clone->RecordCount();
    }
}

bool GridRows::isUpdatable() const {
    return m_recordset && m_recordset->isOpen() && m_recordset->Updatable();
}

int GridRows::columnOf(QStringView field) const {
    return m_clone && m_clone->isOpen() ? m_clone->FieldIndex(field) : -1;
}

dao::FieldType GridRows::typeOf(int column) const {
    return m_clone->TypeOf(column);
}

bool GridRows::select(qint64 row) {
    m_selected = row;
    if (row < 0 || row >= m_count || !m_clone->isOpen()) {
        return false;
    }
    m_clone->setAbsolutePosition(row);
    return true;
}

dao::Bookmark GridRows::bookmark() const {
    return m_selected >= 0 && m_selected < m_count ? m_clone->Bookmark() : dao::Bookmark();
}

QVariant GridRows::value(int column) const {
    if (m_selected == m_editRow) {
        if (const auto typed = m_typed.constFind(column); typed != m_typed.constEnd()) {
            return *typed;
        }
    }
    return m_selected < m_count ? m_clone->value(column) : QVariant();
}

qint64 GridRows::rowOf(dao::Bookmark bookmark) {
    if (bookmark.isNull() || !m_clone || !m_clone->isOpen()) {
        return -1;
    }
    try {
        m_clone->setBookmark(bookmark);
        return m_clone->AbsolutePosition();
    } catch (const std::exception&) {
        return -1; // a place of rows that are gone
    }
}

void GridRows::moveRecordset(qint64 row) {
    if (row >= 0 && row < m_count && m_recordset->isOpen()) {
        m_recordset->setAbsolutePosition(row);
    }
}

void GridRows::openBuffer() {
    if (m_editRow >= m_count) {
        m_recordset->AddNew();
    } else {
        m_recordset->setAbsolutePosition(m_editRow);
        m_recordset->Edit();
    }
}

void GridRows::beginEdit(qint64 row) {
    if (m_editRow == row) {
        return;
    }
    m_editRow = row;
    m_typed.clear();
    try {
        openBuffer();
    } catch (...) {
        m_editRow = -1;
        throw;
    }
}

void GridRows::setValue(int column, const QVariant& value) {
    m_typed.insert(column, value);
}

qint64 GridRows::commit() {
    if (!m_recordset->EditInProgress()) {
        openBuffer(); // something else moved the recordset and dropped the buffer
    }
    for (auto it = m_typed.constBegin(); it != m_typed.constEnd(); ++it) {
        m_recordset->setValue(it.key(), it.value());
    }
    m_recordset->Update();
    const bool added = m_editRow >= m_count;
    const qint64 row = m_editRow;
    m_editRow = -1;
    m_typed.clear();
    if (!added) {
        return row;
    }
    const qint64 found = rowOf(m_recordset->LastModified());
    m_count = m_clone->RecordCount();
    return found >= 0 ? found : m_count - 1;
}

void GridRows::cancel() {
    if (m_editRow < 0) {
        return;
    }
    m_editRow = -1;
    m_typed.clear();
    if (m_recordset->isOpen()) {
        m_recordset->CancelUpdate();
    }
}

} // namespace yrw
