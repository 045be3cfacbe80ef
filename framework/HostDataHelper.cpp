#include "framework/HostDataHelper.h"

#include <QDateTime>

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRW.HostDataHelper");
const QString kRecordUserID = QStringLiteral("RecordUserID");

/// Position of a word outside quotes and brackets, standing alone; -1 when absent.
qsizetype findWord(const QString& sql, QStringView word) {
    QChar closing;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql.at(i);
        if (!closing.isNull()) {
            closing = c == closing ? QChar() : closing;
        } else if (c == u'"' || c == u'\'') {
            closing = c;
        } else if (c == u'[') {
            closing = u']';
        } else if (QStringView(sql).mid(i).startsWith(word, Qt::CaseInsensitive)) {
            const QChar before = i > 0 ? sql.at(i - 1) : QChar(u' ');
            const qsizetype end = i + word.size();
            const QChar after = end < sql.size() ? sql.at(end) : QChar(u' ');
            if (!before.isLetterOrNumber() && before != u'_' && !after.isLetterOrNumber() &&
                after != u'_') {
                return i;
            }
        }
    }
    return -1;
}

/// A text between double quotes, or between single ones when it holds a double one. There is no way
/// to write a quote inside its own kind, and a value that did could go on as a condition.
QString textLiteral(const QString& text) {
    const QChar quote = text.contains(u'"') ? u'\'' : u'"';
    if (text.contains(quote)) {
        throw AutomationError(
            kErrorBadCondition, kSource,
            QStringLiteral("A value with both kinds of quotes cannot be compared: %1").arg(text));
    }
    return quote + text + quote;
}

QString literalOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("'#'yyyy-MM-dd HH:mm:ss'#'"));
    default:
        return textLiteral(value.toString());
    }
}

QString selectAll(const QString& query) {
    return QStringLiteral("SELECT %1.* FROM %1").arg(query);
}

} // namespace

Ref<dao::Database> HostDataHelper::OpenDatabase(const Ref<dao::Workspace>& workspace,
                                                const QString& path) {
    if (!workspace) {
        throw AutomationError(kErrorObjectRequired, kSource, QStringLiteral("Object required"));
    }
    Ref<dao::Database> database = workspace->OpenDatabase(path);
    setDatabase(database);
    return database;
}

void HostDataHelper::setDatabase(const Ref<dao::Database>& database) {
    m_database = database;
}

dao::Database& HostDataHelper::Database() const {
    if (!m_database) {
        throw AutomationError(kErrorObjectRequired, kSource, QStringLiteral("Object required"));
    }
    return *m_database;
}

bool HostDataHelper::hasDatabase() const {
    return m_database && m_database->isOpen();
}

Ref<dao::Recordset> HostDataHelper::AddRecord(const Ref<dao::Recordset>& recordset,
                                              const dao::ValueList& recordData,
                                              const QString& tableName, const QString& queryName,
                                              bool getNewKey, qint64& newRecordID,
                                              const QString& keyField) {
    dao::Transaction transaction(
        Database()); // before anything is read, since only a write may wait
    const Ref<dao::Recordset> rows =
        recordset ? recordset : Database().OpenRecordset(tableName, dao::RecordsetType::Table);
    const int keyColumn = rows->FieldIndex(keyField);
    if (keyColumn < 0) { // before anything is stored
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no field '%1'.").arg(keyField));
    }
    rows->AddNew();
    try {
        for (const dao::ValueList::Entry& entry : recordData) {
            rows->setValue(entry.name, entry.value);
        }
        if (m_currentUserID != 0 && rows->FieldIndex(kRecordUserID) >= 0 &&
            !recordData.contains(kRecordUserID)) {
            rows->setValue(kRecordUserID, m_currentUserID);
        }
        rows->Update();
        transaction.commit();
    } catch (...) {
        rows->CancelUpdate();
        throw;
    }
    rows->setBookmark(rows->LastModified());
    const QVariant key = rows->value(keyColumn);
    if (getNewKey) {
        newRecordID = key.toLongLong();
    }
    if (recordset || queryName.isEmpty()) {
        return rows;
    }
    rows->Close();
    return OpenRecordset(BuildQuerySQL(queryName, key, keyField));
}

bool HostDataHelper::DeleteByKey(const QString& keyField, const QVariant& keyValue,
                                 const QString& actionQuery, const QString& tableName) {
    if (actionQuery.isEmpty()) {
        Database().DeleteRows(tableName, keyField, keyValue);
    } else {
        Database().ExecuteQuery(actionQuery, {{keyField, keyValue}});
    }
    return true;
}

QString HostDataHelper::BuildQuerySQL(const QString& queryName, const QVariant& recordData,
                                      const QString& keyField) const {
    if (recordData.typeId() != QMetaType::QVariantList &&
        recordData.typeId() != QMetaType::QStringList) {
        return AddCondition(selectAll(queryName), EqualCondition(keyField, recordData));
    }
    QStringList literals;
    const QVariantList keys = recordData.toList();
    for (const QVariant& key : keys) {
        literals.append(literalOf(key));
    }
    const QString condition =
        literals.isEmpty()
            ? QString(u'[' + keyField + QStringLiteral("] Is Null"))
            : QStringLiteral("[%1] In (%2)").arg(keyField, literals.join(QStringLiteral(",")));
    return AddCondition(selectAll(queryName), condition);
}

QString HostDataHelper::AddCondition(const QString& sql, const QString& condition) {
    const qsizetype order = findWord(sql, u"ORDER BY");
    const QString head = order < 0 ? sql : sql.left(order).trimmed();
    const QString tail = order < 0 ? QString() : QString(u' ' + sql.mid(order));
    const bool isFirst = findWord(head, u"WHERE") < 0;
    return head + (isFirst ? QStringLiteral(" WHERE ") : QStringLiteral(" AND ")) + condition +
           tail;
}

QString HostDataHelper::EqualCondition(const QString& field, const QVariant& value) {
    if (value.isNull()) {
        return u'[' + field + QStringLiteral("] Is Null");
    }
    return u'[' + field + QStringLiteral("]=") + literalOf(value);
}

Ref<dao::Recordset> HostDataHelper::OpenRecordset(const QString& sql,
                                                  const RecordsetRequest& request) const {
    const bool isExtended =
        !request.Filter.isEmpty() || !request.AdditionalSQL.isEmpty() || !request.Sort.isEmpty();
    QString text = isExtended && findWord(sql, u"SELECT") != 0 ? selectAll(sql) : sql;
    if (!request.Filter.isEmpty()) {
        text = AddCondition(text, u'(' + request.Filter + u')');
    }
    if (!request.AdditionalSQL.isEmpty()) {
        text += u' ' + request.AdditionalSQL;
    }
    if (!request.Sort.isEmpty()) {
        const bool isOrdered = findWord(text, u"ORDER BY") >= 0;
        text += (isOrdered ? QStringLiteral(", ") : QStringLiteral(" ORDER BY ")) + request.Sort;
    }
    return Database().OpenRecordset(text, request.CursorType, request.RecordsetOptions);
}

Ref<dao::Recordset> HostDataHelper::OpenQuery(const QString& name,
                                              const dao::Parameters& parameters) const {
    return Database().OpenQuery(name, parameters);
}

qint64 HostDataHelper::RunActionQuery(const QString& name,
                                      const dao::Parameters& parameters) const {
    return Database().ExecuteQuery(name, parameters);
}

FieldDictionaryPtr HostDataHelper::BuildFieldDictionary(const dao::Recordset& recordset) {
    QStringList names;
    std::vector<dao::FieldType> types;
    for (int column = 0; column < recordset.FieldCount(); ++column) {
        names.append(recordset.FieldName(column));
        types.push_back(recordset.TypeOf(column));
    }
    return std::make_shared<const FieldDictionary>(names, std::move(types));
}

} // namespace yrw
