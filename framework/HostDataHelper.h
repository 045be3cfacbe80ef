#pragma once

#include "framework/ICollection.h"
#include "platform/dao/Database.h"

namespace yrw {

/// The framework's data-access object, bound to one database by `OpenDatabase` (or
/// `setDatabase`).
///
/// Lifetime: one per application object, owned by it.
/// Thread: the user-interface thread.
class HostDataHelper {
public:
    HostDataHelper() = default;
    HostDataHelper(const HostDataHelper&) = delete;
    HostDataHelper& operator=(const HostDataHelper&) = delete;

    /// Opens a database through the workspace and binds the helper to it. Raises what
    /// `dao::Workspace::OpenDatabase` raises; the helper then stays as it was.
    Ref<dao::Database> OpenDatabase(const Ref<dao::Workspace>& workspace, const QString& path);
    /// Binds to a database that is open already; nothing unbinds.
    void setDatabase(const Ref<dao::Database>& database);
    /// The bound database. Raises `kErrorObjectRequired` when there is none.
    [[nodiscard]] dao::Database& Database() const;
    [[nodiscard]] bool hasDatabase() const;

    /// User who writes: stamped on rows that the helper adds, in `RecordUserID`.
    [[nodiscard]] qint64 CurrentUserID() const noexcept { return m_currentUserID; }
    void setCurrentUserID(qint64 id) noexcept { m_currentUserID = id; }
    /// Code of that user, stamped on rows that the helper changes, in `ChangeUserCode`.
    void setCurrentUserCode(const QString& code) { m_currentUserCode = code; }

    /// Adds a row. Names that the table does not have, and a recordset without the key field, raise
    /// `kErrorNotInCollection`, and nothing is added. Fills `RecordUserID` where the table has that
    /// field and the caller gave none.
    /// Without a recordset one is opened on `queryName`'s rows of the new key (or the table's).
    /// Returns the recordset positioned on the new row, the key in `newRecordID` (0 for a key that
    /// is no number).
    Ref<dao::Recordset> AddRecord(const Ref<dao::Recordset>& recordset,
                                  const dao::ValueList& recordData, const QString& tableName,
                                  const QString& queryName, bool getNewKey, qint64& newRecordID,
                                  const QString& keyField = QStringLiteral("RecordID"));
    /// Runs an action query with the one parameter `keyField`; an empty action query name deletes
    /// the rows of `tableName` directly. True when it ran.
    bool DeleteByKey(const QString& keyField, const QVariant& keyValue, const QString& actionQuery,
                     const QString& tableName);
    /// "SELECT q.* FROM q WHERE ..." for a key or a list of keys.
    [[nodiscard]] QString BuildQuerySQL(const QString& queryName, const QVariant& recordData,
                                        const QString& keyField) const;
    /// Adds a condition: "WHERE" before the first, "AND" before each later one.
    [[nodiscard]] static QString AddCondition(const QString& sql, const QString& condition);
    /// The condition "[field]=" with the value as a literal: numbers plain, texts between double
    /// quotes, or single ones where the text holds a double one (one that holds both kinds raises
    /// `kErrorBadCondition`).
    [[nodiscard]] static QString EqualCondition(const QString& field, const QVariant& value);
    /// Opens rows from SQL text or a query name. The filter is added to the text as one more
    /// condition, then the additional SQL as it stands, then the sort as its order.
    [[nodiscard]] Ref<dao::Recordset> OpenRecordset(const QString& sql,
                                                    const RecordsetRequest& request = {}) const;
    /// Opens a stored query with a parameter table.
    [[nodiscard]] Ref<dao::Recordset> OpenQuery(const QString& name,
                                                const dao::Parameters& parameters) const;
    /// Runs a stored action query; the number of rows.
    qint64 RunActionQuery(const QString& name, const dao::Parameters& parameters) const;
    [[nodiscard]] static FieldDictionaryPtr BuildFieldDictionary(const dao::Recordset& recordset);
    /// Fills a record from the recordset's current row (taking its bookmark first) and moves the
    /// recordset on. Without a dictionary one is built.
    static Ref<IRecord> MakeRecord(const FieldDictionaryPtr& fields,
                                   const Ref<dao::Recordset>& recordset,
                                   const Ref<ICollection>& collection, const Ref<IRecord>& record);
    /// Writes fields of one record's row in one transaction, comparing with the values that the
    /// record was read with (`ChangeDate` and `ChangeUserCode` apart). Values that the record does
    /// not know as read are not compared. Raises `kErrorConflict` as a `dao::ConflictError`,
    /// `kErrorRecordNotFound`.
    bool UpdateRecord(IRecord& record, const dao::ValueList& values);

private:
    /// Writes one row; the written fields as they stand in the database now.
    dao::ValueList writeRow(IRecord& record, const dao::ValueList& values);

    Ref<dao::Database> m_database;
    qint64 m_currentUserID = 0;
    QString m_currentUserCode;
};

} // namespace yrw
