#pragma once

#include "platform/dao/Database.h"
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
    [[nodiscard]] std::optional<qint64> oldKey() const;
    /// A field of it, Null also where the old table has none of that name.
    [[nodiscard]] QVariant value(QStringView field) const;
    void setValue(QStringView field, const QVariant& value);
    /// Has the database give the row a key.
    void forgetKey();
    /// Has a remark on this row.
    void remark(const QString& text, bool isLoss) const;
    /// Adds the row; the key that it has now. A dry run makes keys up.
    qint64 write();

private:
    void takeCell(int column, const jet::JetCell& cell);
    void setField(int column, const QVariant& value);

    Ref<dao::Recordset> m_rows;
    ImportedTable& m_report;
    bool m_isDryRun;
    std::vector<int> m_places;      ///< of the old columns among the fields; -1: no such field
    std::vector<QString> m_names;   ///< of the old columns
    std::vector<QVariant> m_values; ///< by field
    std::vector<bool> m_isGiven;    ///< by field
    int m_key;                      ///< field of the key; -1: the table has none
    qint64 m_madeUp = 0;
};

} // namespace yrw
