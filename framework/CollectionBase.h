#pragma once

#include "framework/HostDataHelper.h"
#include "framework/IApplication.h"
#include "platform/component/NamedCalls.h"

namespace yrw {

/// How one kind of record differs from the others: everything else is common to all of them.
/// Lifetime: a constant of the program; collections and records keep a reference to it.
struct TableDifferences {
    QString TableName{};
    QString QueryName{}; ///< what `ICollection::QueryName` answers
    QString ObjectKey{};
    QString CollectionName{};
    QString ClassName{};
    QString CommonFieldName{};
    QString ShortDisplayFieldName = QStringLiteral("RecordID");
    QString KeyField = QStringLiteral("RecordID");
    QString StoredQuery{}; ///< query (or table) that rows are read from
    QString DeleteQuery{}; ///< action query that deletes by key; empty: the row is deleted directly
    QString ItemSource{};  ///< source of the "was not found" error
    QString FieldSource{}; ///< source of the "does not exist" error
    QString UseName{};     ///< answer to the named call "UseName"; empty: the call is unknown
    /// Whether `CancelMultipleFieldUpdate` empties the pending values before it drops them.
    bool EmptiesPendingValues = true;
};

/// A record over a table of differences: carries its row's values.
class RecordBase : public virtual IRecord {
public:
    explicit RecordBase(const TableDifferences& differences);
    ~RecordBase() override;

    [[nodiscard]] Ref<IApplication> Application() const override;
    void setApplication(const Ref<IApplication>& application) override;
    [[nodiscard]] Ref<ICollection> Collection() const override;
    void setCollection(const Ref<ICollection>& collection) override;
    void BeforeFieldChange(const QString& name, const QVariant& value) override;
    void AfterFieldChange(const QString& name, const QVariant& value) override;
    [[nodiscard]] Ref<dao::Recordset> Recordset() const override;
    void setRecordset(const Ref<dao::Recordset>& recordset) override;
    void Refresh() override;
    [[nodiscard]] dao::Bookmark Bookmark() const override;
    [[nodiscard]] Ref<dao::Field> Field(const QString& name) override;
    [[nodiscard]] const dao::ValueList& ValueArray() const override;
    void setValueArray(const dao::ValueList& values) override;
    void SetValue(const QString& name, const QVariant& value) override;
    [[nodiscard]] FieldDictionaryPtr Fields() const override;
    void setFields(const FieldDictionaryPtr& fields) override;
    bool BeginMultipleFieldUpdate() override;
    bool EndMultipleFieldUpdate() override;
    bool CancelMultipleFieldUpdate() override;
    [[nodiscard]] bool InMultipleUpdate() const override;
    void setInMultipleUpdate(bool in) override;
    [[nodiscard]] dao::ValueList& MultipleUpdateFieldValues() override;
    void BeforeRecordUpdate() override;
    void AfterRecordUpdate() override;
    [[nodiscard]] Ref<dao::Field> ShortDisplayValue() override;

    /// `SetValue` does not touch the values as read.
    [[nodiscard]] dao::ValueList valuesAsRead() const override { return m_valuesAsRead; }
    /// One value as it was read; the one in the value array when it was not read with the others.
    [[nodiscard]] QVariant valueAsRead(const QString& name) const;
    [[nodiscard]] QVariant keyAsRead(const QString& keyField) override {
        return valueAsRead(keyField);
    }
    void takeValuesAsRead(const dao::ValueList& values) override;
    void noteWritten(const QString& name, const QVariant& value) override;
    /// Keeps a field's value pending, or writes it at once outside a multiple-field update.
    void assignField(int column, const QVariant& value);
    /// Value of a column of the field dictionary in the value array; Null where it has none.
    [[nodiscard]] QVariant valueAt(int column) const;
    /// The data helper of the application; raises `kErrorObjectRequired` without one.
    [[nodiscard]] HostDataHelper& dataHelper() const;
    [[nodiscard]] const TableDifferences& differences() const noexcept { return m_differences; }

private:
    const TableDifferences& m_differences;
    Ref<IApplication> m_application;
    Ref<ICollection> m_collection;
    Ref<dao::Recordset> m_recordset;
    dao::Bookmark m_bookmark;
    FieldDictionaryPtr m_fields;
    dao::ValueList m_values;
    dao::ValueList m_valuesAsRead;
    dao::ValueList m_pending;
    bool m_inMultipleUpdate = false;
};

/// A collection over a table of differences. Answers "UseName" as a named call where the table
/// gives one.
class CollectionBase : public virtual ICollection, public INamedCalls {
public:
    explicit CollectionBase(const TableDifferences& differences);
    ~CollectionBase() override;

    [[nodiscard]] Ref<IApplication> Application() const override;
    void setApplication(const Ref<IApplication>& application) override;
    [[nodiscard]] Ref<Counted> Parent() const override;
    void setParent(const Ref<Counted>& parent) override;
    Ref<IRecord> Add(const dao::ValueList& recordData, const Ref<dao::Recordset>& daoRecordset,
                     qint64& newRecordID, bool getNewRecord) override;
    [[nodiscard]] std::vector<Ref<IRecord>> NewEnum() override;
    [[nodiscard]] Ref<IRecord> Item(const QVariant& recordID) override;
    [[nodiscard]] Ref<IRecord> Item(const Ref<dao::Recordset>& recordset) override;
    bool Delete(const QVariant& recordID, const Ref<dao::Recordset>& recordset = nullptr,
                dao::Bookmark bookmark = {}) override;
    /// Rows by key, or all rows that `conditions` leaves.
    [[nodiscard]] Ref<dao::Recordset> Recordset(const RecordsetRequest& request) override;
    [[nodiscard]] QString TableName() const override;
    [[nodiscard]] QString KeyField() const override;
    [[nodiscard]] QString ObjectKey() const override;
    [[nodiscard]] QString CollectionName() const override;
    [[nodiscard]] QString QueryName() const override;
    [[nodiscard]] QVariant ShowFields() const override;
    void setShowFields(const QVariant& fields) override;
    [[nodiscard]] QString CommonFieldName() const override;
    [[nodiscard]] QString ShortDisplayFieldName() const override;
    [[nodiscard]] QString ClassName() const override;
    [[nodiscard]] qint64 Count() override;
    QVariant callByName(const QString& name, const QVariantMap& arguments) override;

protected:
    /// Makes an empty record of this kind.
    [[nodiscard]] virtual Ref<IRecord> newRecord() const = 0;
    /// False for a collection that reads all its rows whatever key it is asked for.
    [[nodiscard]] virtual bool selectsByKey() const { return true; }
    /// Conditions beyond the key, in order: user, parent, status.
    [[nodiscard]] virtual QStringList conditions(const RecordsetRequest& request) const;
    [[nodiscard]] HostDataHelper& dataHelper() const;
    [[nodiscard]] const TableDifferences& differences() const noexcept { return m_differences; }

private:
    Ref<IRecord> addDetached(const dao::ValueList& recordData, qint64& newRecordID);
    [[nodiscard]] Ref<IRecord> itemFrom(const Ref<dao::Recordset>& recordset,
                                        const QString& description);
    [[nodiscard]] QString selection(const RecordsetRequest& request) const;

    const TableDifferences& m_differences;
    Ref<IApplication> m_application;
    Ref<Counted> m_parent;
};

} // namespace yrw
