#pragma once

#include "platform/dao/Recordset.h"

#include <QHash>
#include <QString>

#include <optional>

namespace yrw {

/// Text of a field's value as the grid shows it: dates as dd/MM/yyyy HH:mm, booleans as Yes or No,
/// fractional numbers with `decimals` places (-1: as many as they have).
[[nodiscard]] QString gridText(const QVariant& value, int decimals = -1);

/// Value of a text typed for a field, Null for an empty one; nothing when it does not fit the type.
[[nodiscard]] std::optional<QVariant> gridValue(const QString& text, dao::FieldType type);

/// The rows behind a record grid: reads one at a time and holds the edit of one.
///
/// Rows count from 0; the row behind the last is the new record. Columns are the recordset's.
/// Reading goes through a clone, so that painting never moves the recordset's own cursor.
/// Thread: the user-interface thread.
class GridRows {
public:
    /// Takes the rows of a recordset; nothing for none. Drops a pending edit.
    void setRecordset(const Ref<dao::Recordset>& recordset);
    [[nodiscard]] const Ref<dao::Recordset>& recordset() const noexcept { return m_recordset; }
    [[nodiscard]] qint64 count() const noexcept { return m_count; }
    [[nodiscard]] bool isUpdatable() const;
    /// Position of a field, -1 when there is none.
    [[nodiscard]] int columnOf(QStringView field) const;
    [[nodiscard]] dao::FieldType typeOf(int column) const;

    /// Goes to a row for reading; false when it cannot be reached.
    bool select(qint64 row);
    /// Place of the row selected.
    [[nodiscard]] dao::Bookmark bookmark() const;
    /// Value in the row selected, or the one typed for it. Raises as the recordset does.
    [[nodiscard]] QVariant value(int column) const;
    /// Moves the recordset's own cursor; nothing for a row that cannot be reached.
    void moveRecordset(qint64 row);

    // The edit of one row. Errors are those of the recordset.
    [[nodiscard]] bool isEditing() const noexcept { return m_editRow >= 0; }
    [[nodiscard]] qint64 editRow() const noexcept { return m_editRow; }
    void beginEdit(qint64 row);
    void setValue(int column, const QVariant& value);
    /// Writes the edit; the row it stands on afterwards. Stays in the edit when it raises.
    qint64 commit();
    void cancel();

private:
    /// Row of a place; -1 when it is not among the rows.
    [[nodiscard]] qint64 rowOf(dao::Bookmark bookmark);
    void openBuffer();

    Ref<dao::Recordset> m_recordset;
    Ref<dao::Recordset> m_clone;
    qint64 m_count = 0;
    qint64 m_selected = -1;
    qint64 m_editRow = -1;
    QHash<int, QVariant> m_typed;
};

} // namespace yrw
