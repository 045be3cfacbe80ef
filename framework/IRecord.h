#pragma once

#include "framework/FieldDictionary.h"
#include "platform/component/Counted.h"
#include "platform/dao/Recordset.h"

namespace yrw {

class IApplication;
class ICollection;

/// One row of a collection, as every tool of the framework sees it.
///
/// A record carries the values of its row, so it outlives the recordset that it was read from.
/// Lifetime: counted.
/// Thread: the user-interface thread.
class IRecord : public virtual Counted {
public:
    ~IRecord() override;

    [[nodiscard]] virtual Ref<IApplication> Application() const = 0;
    virtual void setApplication(const Ref<IApplication>& application) = 0;
    /// The collection that made the record.
    [[nodiscard]] virtual Ref<ICollection> Collection() const = 0;
    virtual void setCollection(const Ref<ICollection>& collection) = 0;

    /// Hooks around the change of one field.
    virtual void BeforeFieldChange(const QString& name, const QVariant& value) = 0;
    virtual void AfterFieldChange(const QString& name, const QVariant& value) = 0;

    /// The recordset that the record was read from; nothing for a detached record.
    [[nodiscard]] virtual Ref<dao::Recordset> Recordset() const = 0;
    /// Keeps the recordset and, when it supports bookmarks, its current bookmark.
    virtual void setRecordset(const Ref<dao::Recordset>& recordset) = 0;
    /// Reads the row again and takes its values; dictionary, bookmark and recordset stay.
    virtual void Refresh() = 0;
    [[nodiscard]] virtual dao::Bookmark Bookmark() const = 0;

    /// A field bound to this record. Setting its value stores it at once, or keeps it pending
    /// during a multiple-field update; a pending field still reads its old value.
    /// Raises `kErrorFieldNotFound` for an unknown name.
    [[nodiscard]] virtual Ref<dao::Field> Field(const QString& name) = 0;

    /// The row's values in the order of the fields.
    [[nodiscard]] virtual const dao::ValueList& ValueArray() const = 0;
    virtual void setValueArray(const dao::ValueList& values) = 0;
    /// Sets a value in the value array only; writes nothing. An unknown name is ignored.
    virtual void SetValue(const QString& name, const QVariant& value) = 0;
    [[nodiscard]] virtual FieldDictionaryPtr Fields() const = 0;
    virtual void setFields(const FieldDictionaryPtr& fields) = 0;

    /// Begins a multiple-field update, dropping one that was open; true when begun.
    virtual bool BeginMultipleFieldUpdate() = 0;
    /// Writes the pending values in one go; with none it writes nothing. True; raises
    /// `kErrorConflict` (the update stays open) when somebody else changed one of the fields.
    virtual bool EndMultipleFieldUpdate() = 0;
    /// Drops the pending values; true.
    virtual bool CancelMultipleFieldUpdate() = 0;
    [[nodiscard]] virtual bool InMultipleUpdate() const = 0;
    virtual void setInMultipleUpdate(bool in) = 0;
    /// The pending values; names compare without regard to case.
    [[nodiscard]] virtual dao::ValueList& MultipleUpdateFieldValues() = 0;

    /// Hooks around the writing of the record.
    virtual void BeforeRecordUpdate() = 0;
    virtual void AfterRecordUpdate() = 0;
    /// The field whose value stands for the record in a title or a list.
    [[nodiscard]] virtual Ref<dao::Field> ShortDisplayValue() = 0;

    // What the data helper tells a record of its row. A record that keeps apart what was read from
    // what `SetValue` made of it overrides these.
    /// Takes values as read afresh: they become the value array too.
    virtual void takeValuesAsRead(const dao::ValueList& values) { setValueArray(values); }
    /// Notes one written value: it now is what stands in the database.
    virtual void noteWritten(const QString& name, const QVariant& value) { SetValue(name, value); }
    /// The values as they were read, for the conflict check; none: those at the time of writing.
    [[nodiscard]] virtual dao::ValueList valuesAsRead() const { return {}; }
    /// The value of a key field that says which row the record is.
    [[nodiscard]] virtual QVariant keyAsRead(const QString& keyField) { return value(keyField); }

    /// Value of a field by name: `Field(name)->Value()`.
    [[nodiscard]] QVariant value(const QString& name) { return Field(name)->Value(); }
};

} // namespace yrw
