// Rows into records and back: the part of the data helper that knows what a record keeps.
#include "framework/CollectionBase.h"

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRW.HostDataHelper");
const QString kChangeUserCode = QStringLiteral("ChangeUserCode");
/// Fields that may change beneath an edit without harm.
const QStringList kStamps{QStringLiteral("ChangeDate"), kChangeUserCode};

dao::ValueList valuesOf(const dao::Recordset& row) {
    dao::ValueList values;
    for (int column = 0; column < row.FieldCount(); ++column) {
        values.set(row.FieldName(column), row.value(column));
    }
    return values;
}

[[noreturn]] void raiseConflict(const dao::ValueList& changed) {
    QStringList names;
    for (const dao::ValueList::Entry& entry : changed) {
        names.append(entry.name);
    }
    throw dao::ConflictError(
        kSource,
        QStringLiteral("Somebody else has changed %1 since the record was read.")
            .arg(names.join(QStringLiteral(", "))),
        changed);
}

/// The record's row in its base table, alone in a recordset.
Ref<dao::Recordset> openRow(dao::Database& database, IRecord& record) {
    const Ref<ICollection> collection = record.Collection();
    if (!collection) {
        throw AutomationError(kErrorObjectRequired, kSource, QStringLiteral("Object required"));
    }
    const QString table = collection->TableName();
    const QVariant key = record.keyAsRead(collection->KeyField());
    const Ref<dao::Recordset> row = database.OpenRecordset(
        HostDataHelper::AddCondition(QStringLiteral("SELECT %1.* FROM %1").arg(table),
                                     HostDataHelper::EqualCondition(collection->KeyField(), key)));
    if (row->AtEof()) {
        throw AutomationError(kErrorRecordNotFound, kSource,
                              QStringLiteral("Record : %1 was not found").arg(key.toString()));
    }
    return row;
}

} // namespace

Ref<IRecord> HostDataHelper::MakeRecord(const FieldDictionaryPtr& fields,
                                        const Ref<dao::Recordset>& recordset,
                                        const Ref<ICollection>& collection,
                                        const Ref<IRecord>& record) {
    record->setRecordset(recordset);
    record->setCollection(collection);
    record->setApplication(collection ? collection->Application() : nullptr);
    record->setFields(fields ? fields : BuildFieldDictionary(*recordset));
    record->takeValuesAsRead(valuesOf(*recordset));
    recordset->MoveNext();
    return record;
}

bool HostDataHelper::UpdateRecord(IRecord& record, const dao::ValueList& values) {
    record.BeforeRecordUpdate();
    const dao::ValueList stored = writeRow(record, values);
    for (const dao::ValueList::Entry& entry : stored) {
        record.noteWritten(entry.name, entry.value);
    }
    record.AfterRecordUpdate();
    return true;
}

dao::ValueList HostDataHelper::writeRow(IRecord& record, const dao::ValueList& values) {
    dao::ValueList written = values;
    // One transaction around reading and writing: what is compared is what is overwritten.
    dao::Transaction transaction(Database());
    const Ref<dao::Recordset> row = openRow(Database(), record);
    if (!m_currentUserCode.isEmpty() && row->FieldIndex(kChangeUserCode) >= 0 &&
        !values.contains(kChangeUserCode)) {
        written.set(kChangeUserCode, m_currentUserCode);
    }
    row->Edit();
    for (const dao::ValueList::Entry& entry : written) {
        row->setValue(entry.name, entry.value);
    }
    row->compareWith(record.valuesAsRead(), kStamps);
    try {
        row->Update();
    } catch (const dao::ConflictError& conflict) {
        raiseConflict(conflict.current());
    }
    // As the database keeps them: a date without its milliseconds, a number given as text.
    for (int i = 0; i < written.count(); ++i) {
        written.setAt(i, row->value(written.at(i).name));
    }
    row->Close();
    transaction.commit();
    return written;
}

} // namespace yrw
