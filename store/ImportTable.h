#pragma once

#include "platform/dao/RowAdder.h"
#include "platform/jet/JetRows.h"
#include "store/ImportReport.h"

namespace yrw {

/// Takes the rows of one table of an old database over into the table of that name.
///
/// A row is taken, changed where that is wanted, and written. What is not as stored any more, and
/// what the notes database has no place for, goes into the report.
/// Lifetime: one table of one import; all that it is given outlives it. Thread: the user-interface
/// thread.
class ImportTable {
public:
    ImportTable(dao::Database& target, const jet::JetTable& old, ImportedTable& report,
                bool isDryRun);

    [[nodiscard]] ImportedTable& report() const noexcept { return m_report; }
    /// Begins with a row.
    void take(const jet::JetRow& row);
    /// Its key in the old file; nothing where it has none.
    [[nodiscard]] const std::optional<qint64>& oldKey() const noexcept { return m_oldKey; }
    /// A field of it, Null also where the old table has none of that name.
    [[nodiscard]] QVariant value(QStringView field) const;
    /// Does nothing for a field that the old table does not have.
    void setValue(QStringView field, const QVariant& value);
    /// Has the database give the row a key.
    void forgetKey();
    /// Has a remark on this row.
    void remark(const QString& text, bool isLoss) const;
    /// Adds the row; the key that it has now. A dry run makes keys up.
    qint64 write();

private:
    [[nodiscard]] int placeOf(QStringView field) const;
    void setField(int field, const QVariant& value);

    ImportedTable& m_report;
    bool m_isDryRun;
    std::vector<int> m_places;      ///< of the old columns among the fields; -1: no such field
    QStringList m_columns;          ///< of the old table
    QStringList m_fields;           ///< that are given in every row
    std::vector<QVariant> m_values; ///< by field
    std::optional<qint64> m_oldKey;
    std::unique_ptr<dao::RowAdder> m_rows;
    qint64 m_madeUp = 0;
};

} // namespace yrw
