#include "framework/CollectionBase.h"

#include <utility>

namespace yrw {

namespace {

/// A field that belongs to a record rather than to a recordset: it reads the record's value array.
class RecordField final : public dao::Field {
public:
    RecordField(Ref<RecordBase> record, int column)
        : m_record(std::move(record)), m_fields(m_record->Fields()), m_column(column) {}

    [[nodiscard]] QString Name() const override { return m_fields->names().at(m_column); }
    [[nodiscard]] dao::FieldType Type() const override { return m_fields->typeOf(m_column); }
    [[nodiscard]] QVariant Value() const override { return m_record->valueAt(m_column); }
    void setValue(const QVariant& value) override { m_record->assignField(m_column, value); }

private:
    Ref<RecordBase> m_record;
    FieldDictionaryPtr m_fields;
    int m_column;
};

} // namespace

RecordBase::RecordBase(const TableDifferences& differences) : m_differences(differences) {}

RecordBase::~RecordBase() = default;

Ref<IApplication> RecordBase::Application() const {
    return m_application;
}

void RecordBase::setApplication(const Ref<IApplication>& application) {
    m_application = application;
}

Ref<ICollection> RecordBase::Collection() const {
    return m_collection;
}

void RecordBase::setCollection(const Ref<ICollection>& collection) {
    m_collection = collection;
}

void RecordBase::BeforeFieldChange(const QString& /*name*/, const QVariant& /*value*/) {}

void RecordBase::AfterFieldChange(const QString& /*name*/, const QVariant& /*value*/) {}

void RecordBase::BeforeRecordUpdate() {}

void RecordBase::AfterRecordUpdate() {}

Ref<dao::Recordset> RecordBase::Recordset() const {
    return m_recordset;
}

void RecordBase::setRecordset(const Ref<dao::Recordset>& recordset) {
    m_recordset = recordset;
    if (recordset && recordset->Bookmarkable() && !recordset->AtBof() && !recordset->AtEof()) {
        m_bookmark = recordset->Bookmark();
    }
}

void RecordBase::Refresh() {
    if (!m_collection) {
        throw AutomationError(kErrorObjectRequired, m_differences.ClassName,
                              QStringLiteral("Object required"));
    }
    const Ref<IRecord> fresh = m_collection->Item(valueAsRead(m_differences.KeyField));
    takeValuesAsRead(fresh->ValueArray());
}

dao::Bookmark RecordBase::Bookmark() const {
    return m_bookmark;
}

Ref<dao::Field> RecordBase::Field(const QString& name) {
    const int column = m_fields ? m_fields->indexOf(name) : -1;
    if (column < 0) {
        throw AutomationError(kErrorFieldNotFound, m_differences.FieldSource,
                              QStringLiteral("Field %1 does not exist.").arg(name));
    }
    return Ref<dao::Field>(new RecordField(this, column));
}

const dao::ValueList& RecordBase::ValueArray() const {
    return m_values;
}

void RecordBase::setValueArray(const dao::ValueList& values) {
    m_values = values;
}

void RecordBase::SetValue(const QString& name, const QVariant& value) {
    if (m_fields && m_fields->contains(name)) {
        m_values.set(name, value);
    }
}

FieldDictionaryPtr RecordBase::Fields() const {
    return m_fields;
}

void RecordBase::setFields(const FieldDictionaryPtr& fields) {
    m_fields = fields;
}

bool RecordBase::BeginMultipleFieldUpdate() {
    m_pending = dao::ValueList();
    m_inMultipleUpdate = true;
    return true;
}

bool RecordBase::EndMultipleFieldUpdate() {
    if (!m_pending.isEmpty()) {
        dataHelper().UpdateRecord(*this, m_pending);
    }
    m_pending = dao::ValueList();
    m_inMultipleUpdate = false;
    return true;
}

bool RecordBase::CancelMultipleFieldUpdate() {
    if (m_differences.EmptiesPendingValues) {
        m_pending.clear();
    }
    m_pending = dao::ValueList();
    m_inMultipleUpdate = false;
    return true;
}

bool RecordBase::InMultipleUpdate() const {
    return m_inMultipleUpdate;
}

void RecordBase::setInMultipleUpdate(bool in) {
    m_inMultipleUpdate = in;
}

dao::ValueList& RecordBase::MultipleUpdateFieldValues() {
    return m_pending;
}

Ref<dao::Field> RecordBase::ShortDisplayValue() {
    return Field(m_differences.ShortDisplayFieldName);
}

QVariant RecordBase::valueAsRead(const QString& name) const {
    return m_valuesAsRead.contains(name) ? m_valuesAsRead.value(name) : m_values.value(name);
}

void RecordBase::takeValuesAsRead(const dao::ValueList& values) {
    m_values = values;
    m_valuesAsRead = values;
}

void RecordBase::noteWritten(const QString& name, const QVariant& value) {
    m_values.set(name, value);
    m_valuesAsRead.set(name, value);
}

void RecordBase::assignField(int column, const QVariant& value) {
    const QString name = m_fields->names().at(column);
    BeforeFieldChange(name, value);
    if (m_inMultipleUpdate) {
        m_pending.set(name, value);
    } else {
        dataHelper().UpdateRecord(*this, {{name, value}});
    }
    AfterFieldChange(name, value);
}

QVariant RecordBase::valueAt(int column) const {
    const QString& name = m_fields->names().at(column);
    if (column < m_values.count() &&
        m_values.at(column).name.compare(name, Qt::CaseInsensitive) == 0) {
        return m_values.at(column).value;
    }
    return m_values.value(name);
}

HostDataHelper& RecordBase::dataHelper() const {
    HostDataHelper* helper = m_application ? m_application->DB() : nullptr;
    if (helper == nullptr) {
        throw AutomationError(kErrorObjectRequired, m_differences.ClassName,
                              QStringLiteral("Object required"));
    }
    return *helper;
}

} // namespace yrw
