#include "cli/Rows.h"

#include "cli/SafeText.h"
#include "store/Schema.h"

#include <QDateTime>
#include <QJsonDocument>

#include <utility>

namespace yrw {

QJsonValue jsonValue(const QVariant& value) {
    if (value.isNull()) {
        return QJsonValue::Null;
    }
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    default:
        return value.toString();
    }
}

QJsonObject jsonRow(const dao::Recordset& rows, const QStringList& without) {
    QJsonObject object;
    for (int column = 0; column < rows.FieldCount(); ++column) {
        const QString name = rows.FieldName(column);
        if (!without.contains(name)) {
            object.insert(name, jsonValue(rows.value(column)));
        }
    }
    return object;
}

QByteArray jsonText(const QJsonObject& object) {
    return escapedJson(QJsonDocument(object).toJson());
}

QByteArray JsonArray::next(const QJsonObject& object) {
    const bool isFirst = std::exchange(m_isEmpty, false);
    return (isFirst ? "[\n" : ",\n") +
           escapedJson(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QByteArray JsonArray::end() const {
    return m_isEmpty ? "[\n]\n" : "\n]\n";
}

QString shownDate(const QVariant& date) {
    return date.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString shownOwner(const dao::Recordset& note) {
    const QVariant key = note.value(QStringLiteral("OwnerObjectKey"));
    if (key.isNull()) {
        return QStringLiteral("-");
    }
    return onOneLine(key.toString()) + u':' +
           note.value(QStringLiteral("OwnerRecordID")).toString();
}

QString shownStatus(const QVariant& status) {
    switch (status.toInt()) {
    case static_cast<int>(NoteStatus::Active):
        return QStringLiteral("Active");
    case static_cast<int>(NoteStatus::Done):
        return QStringLiteral("Done");
    default:
        return status.toString();
    }
}

} // namespace yrw
