#include "framework/CollectionBase.h"

#include <utility>

namespace yrw {

namespace {

/// Closes at its end a recordset that a collection opened for itself.
class RecordsetCloser {
public:
    explicit RecordsetCloser(Ref<dao::Recordset> recordset) : m_recordset(std::move(recordset)) {}
    RecordsetCloser(const RecordsetCloser&) = delete;
    RecordsetCloser& operator=(const RecordsetCloser&) = delete;
    ~RecordsetCloser() {
        if (m_recordset) {
            m_recordset->Close();
        }
    }

private:
    Ref<dao::Recordset> m_recordset;
};

/// Keys as the "was not found" error names them.
QString describeKey(const QVariant& key) {
    return key.typeId() == QMetaType::QVariantList ? key.toStringList().join(QStringLiteral(", "))
                                                   : key.toString();
}

} // namespace

CollectionBase::CollectionBase(const TableDifferences& differences) : m_differences(differences) {}

CollectionBase::~CollectionBase() = default;

Ref<IApplication> CollectionBase::Application() const {
    return m_application;
}

void CollectionBase::setApplication(const Ref<IApplication>& application) {
    m_application = application;
}

Ref<Counted> CollectionBase::Parent() const {
    return m_parent;
}

void CollectionBase::setParent(const Ref<Counted>& parent) {
    m_parent = parent;
}

Ref<IRecord> CollectionBase::Add(const dao::ValueList& recordData,
                                 const Ref<dao::Recordset>& daoRecordset, qint64& newRecordID,
                                 bool getNewRecord) {
    if (!daoRecordset) {
        return addDetached(recordData, newRecordID);
    }
    const Ref<dao::Recordset> row =
        dataHelper().AddRecord(daoRecordset, recordData, m_differences.TableName, {}, true,
                               newRecordID, m_differences.KeyField);
    if (!getNewRecord) {
        return newRecord();
    }
    Ref<IRecord> record = Item(row);
    row->setBookmark(row->LastModified()); // reading the row has moved the cursor on
    return record;
}

/// Adds a row and reads it back; one that cannot be read back is not added.
Ref<IRecord> CollectionBase::addDetached(const dao::ValueList& recordData, qint64& newRecordID) {
    dao::Transaction transaction(dataHelper().Database());
    qint64 key = 0;
    const Ref<dao::Recordset> row =
        dataHelper().AddRecord(nullptr, recordData, m_differences.TableName,
                               m_differences.StoredQuery, true, key, m_differences.KeyField);
    const RecordsetCloser closer(row);
    Ref<IRecord> record = Item(row);
    record->setRecordset(nullptr);
    transaction.commit();
    newRecordID = key;
    return record;
}

std::vector<Ref<IRecord>> CollectionBase::NewEnum() {
    const Ref<dao::Recordset> rows = Recordset({});
    const RecordsetCloser closer(rows);
    const FieldDictionaryPtr fields = HostDataHelper::BuildFieldDictionary(*rows);
    std::vector<Ref<IRecord>> records;
    while (!rows->AtEof()) { // making a record moves the cursor on
        records.push_back(HostDataHelper::MakeRecord(fields, rows, this, newRecord()));
    }
    return records;
}

Ref<IRecord> CollectionBase::Item(const QVariant& recordID) {
    Ref<dao::Recordset> rows;
    if (recordID.isValid() || !selectsByKey()) {
        RecordsetRequest request;
        request.RecordData = recordID;
        rows = Recordset(request);
    }
    const RecordsetCloser closer(rows);
    return itemFrom(rows, describeKey(recordID));
}

Ref<IRecord> CollectionBase::Item(const Ref<dao::Recordset>& recordset) {
    return itemFrom(recordset, recordset ? recordset->Name() : QString());
}

Ref<IRecord> CollectionBase::itemFrom(const Ref<dao::Recordset>& recordset,
                                      const QString& description) {
    if (!recordset || recordset->AtEof()) {
        throw AutomationError(kErrorRecordNotFound, m_differences.ItemSource,
                              QStringLiteral("Record : %1 was not found").arg(description));
    }
    return HostDataHelper::MakeRecord(nullptr, recordset, this, newRecord());
}

bool CollectionBase::Delete(const QVariant& recordID, const Ref<dao::Recordset>& recordset,
                            dao::Bookmark bookmark) {
    if (!recordset) {
        return dataHelper().DeleteByKey(m_differences.KeyField, recordID, m_differences.DeleteQuery,
                                        m_differences.TableName);
    }
    recordset->setBookmark(bookmark);
    recordset->Delete();
    return true;
}

Ref<dao::Recordset> CollectionBase::Recordset(const RecordsetRequest& request) {
    QString sql = selection(request);
    const QStringList added = conditions(request);
    for (const QString& condition : added) {
        sql = HostDataHelper::AddCondition(sql, condition);
    }
    return dataHelper().OpenRecordset(sql, request);
}

QString CollectionBase::selection(const RecordsetRequest& request) const {
    if (request.RecordData.isValid() && selectsByKey()) {
        return dataHelper().BuildQuerySQL(m_differences.StoredQuery, request.RecordData,
                                          m_differences.KeyField);
    }
    return QStringLiteral("SELECT %1.* FROM %1").arg(m_differences.StoredQuery);
}

QStringList CollectionBase::conditions(const RecordsetRequest& /*request*/) const {
    return {};
}

QString CollectionBase::TableName() const {
    return m_differences.TableName;
}

QString CollectionBase::KeyField() const {
    return m_differences.KeyField;
}

QString CollectionBase::ObjectKey() const {
    return m_differences.ObjectKey;
}

QString CollectionBase::CollectionName() const {
    return m_differences.CollectionName;
}

QString CollectionBase::QueryName() const {
    return m_differences.QueryName;
}

QVariant CollectionBase::ShowFields() const {
    return {};
}

void CollectionBase::setShowFields(const QVariant& /*fields*/) {}

QString CollectionBase::CommonFieldName() const {
    return m_differences.CommonFieldName;
}

QString CollectionBase::ShortDisplayFieldName() const {
    return m_differences.ShortDisplayFieldName;
}

QString CollectionBase::ClassName() const {
    return m_differences.ClassName;
}

qint64 CollectionBase::Count() {
    // Nothing answers this call, so counting always fails; callers count rows of a recordset.
    INamedCalls* const counter = nullptr;
    return yrw::callByName(counter, QStringLiteral("CountRecords"),
                           {{QStringLiteral("TableQueryName"), m_differences.TableName}})
        .toLongLong();
}

QVariant CollectionBase::callByName(const QString& name, const QVariantMap& /*arguments*/) {
    if (name.compare(u"UseName", Qt::CaseInsensitive) == 0 && !m_differences.UseName.isEmpty()) {
        return m_differences.UseName;
    }
    throw AutomationError(kErrorMemberNotFound, m_differences.ClassName,
                          QStringLiteral("%1 is not a member of this object.").arg(name));
}

HostDataHelper& CollectionBase::dataHelper() const {
    HostDataHelper* helper = m_application ? m_application->DB() : nullptr;
    if (helper == nullptr) {
        throw AutomationError(kErrorObjectRequired, m_differences.ClassName,
                              QStringLiteral("Object required"));
    }
    return *helper;
}

} // namespace yrw
