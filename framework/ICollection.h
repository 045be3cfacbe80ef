#pragma once

#include "framework/IRecord.h"

#include <vector>

namespace yrw {

/// What `ICollection::Recordset` is asked for.
struct RecordsetRequest {
    QVariant RecordData; ///< a key or a list of keys; an invalid variant when missing
    dao::RecordsetType CursorType = dao::RecordsetType::Default;
    dao::LockType LockType = dao::LockType::Default;
    int RecordsetOptions = dao::kNoOptions;
    int CustomOptions = 0; ///< bits of the collection's own meaning
    QString Filter;
    QString Sort;
    QString AdditionalSQL;
};

/// A kind of record that can be listed, fetched, added and deleted.
///
/// Keeps no recordset open between calls.
/// Lifetime: counted; made fresh for each request.
/// Thread: the user-interface thread.
class ICollection : public virtual Counted {
public:
    ~ICollection() override;

    [[nodiscard]] virtual Ref<IApplication> Application() const = 0;
    virtual void setApplication(const Ref<IApplication>& application) = 0;
    /// What the collection belongs to: a record, an application, or nothing.
    [[nodiscard]] virtual Ref<Counted> Parent() const = 0;
    virtual void setParent(const Ref<Counted>& parent) = 0;

    /// Adds a row. Without a recordset the result is the new record, detached. With one, the
    /// recordset is left on the new row and the result is the new record when `getNewRecord` is
    /// true, else an empty record. The new key comes back in `newRecordID`.
    virtual Ref<IRecord> Add(const dao::ValueList& recordData,
                             const Ref<dao::Recordset>& daoRecordset, qint64& newRecordID,
                             bool getNewRecord) = 0;
    /// All records of the collection.
    [[nodiscard]] virtual std::vector<Ref<IRecord>> NewEnum() = 0;
    /// The record with that key. Raises `kErrorRecordNotFound`.
    [[nodiscard]] virtual Ref<IRecord> Item(const QVariant& recordID) = 0;
    /// The record of the recordset's current row; leaves the recordset on the next row, open.
    /// Raises `kErrorRecordNotFound` at the end of it.
    [[nodiscard]] virtual Ref<IRecord> Item(const Ref<dao::Recordset>& recordset) = 0;
    /// Deletes by key, or, with a recordset, the row at the bookmark. True on success.
    virtual bool Delete(const QVariant& recordID, const Ref<dao::Recordset>& recordset = nullptr,
                        dao::Bookmark bookmark = {}) = 0;
    [[nodiscard]] virtual Ref<dao::Recordset> Recordset(const RecordsetRequest& request) = 0;

    [[nodiscard]] virtual QString TableName() const = 0;
    [[nodiscard]] virtual QString KeyField() const = 0;
    /// Two letters that identify the kind of record to the framework.
    [[nodiscard]] virtual QString ObjectKey() const = 0;
    [[nodiscard]] virtual QString CollectionName() const = 0;
    [[nodiscard]] virtual QString QueryName() const = 0;
    [[nodiscard]] virtual QVariant ShowFields() const = 0;
    virtual void setShowFields(const QVariant& fields) = 0;
    /// The name under which other tables refer to this kind of record.
    [[nodiscard]] virtual QString CommonFieldName() const = 0;
    [[nodiscard]] virtual QString ShortDisplayFieldName() const = 0;
    [[nodiscard]] virtual QString ClassName() const = 0;
    [[nodiscard]] virtual qint64 Count() = 0;
};

} // namespace yrw
