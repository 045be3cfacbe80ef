#pragma once

#include "platform/controls/GridColumn.h"
#include "platform/controls/api/IRecordGrid.h"
#include "platform/dao/Recordset.h"

#include <QWidget>

#include <memory>

namespace yrw {

/// The record grid: shows a dynaset row by row, reading a row when it comes into view, so that a
/// million rows cost no more than a page.
///
/// It keeps a clone of its recordset for painting; the recordset's own cursor follows the grid's
/// cursor. Editing writes when the cursor leaves the row; Escape drops the edit. With
/// `setAllowAddNew` a new-record row stands after the last.
///
/// Keys: arrows, PageUp and PageDown, Home and End (columns), Ctrl+Home and Ctrl+End (rows), Tab;
/// F2 or typing edits the cell, Enter ends that edit, Escape drops the row's edit. Enter on a row
/// that is not being edited activates it, as a double-click does.
/// A row that a handler coloured keeps its colour also as the current row, which has a frame that
/// stands out from it; its row mark has a corner of that colour.
/// The tool-tip of a row shows what a handler of `FetchRowRemark` says of it; screen readers get
/// the short text behind the row's cells and the details as its description. Texts are dark on
/// light colours and light on dark ones, whatever the desktop's theme.
class RecordGrid : public QWidget, public IRecordGrid, public IGridSplits {
    Q_OBJECT

public:
    explicit RecordGrid(QWidget* parent = nullptr);
    ~RecordGrid() override;

    /// Shows the rows of a recordset (dynaset or snapshot); nothing empties the grid. Not raised
    /// as a user's move.
    void setRecordset(const Ref<dao::Recordset>& recordset);
    [[nodiscard]] Ref<dao::Recordset> recordset() const;
    void setColumns(const QList<GridColumn>& columns);
    /// The columns with the widths that the user gave them.
    [[nodiscard]] QList<GridColumn> columns() const;
    /// Shows an arrow in a column's header; an unknown field shows none.
    void setSortIndicator(const QString& field, Qt::SortOrder order);
    void setAllowAddNew(bool allow);
    /// Splits the grid into that many panes side by side (1 or 2).
    void setSplitCount(int count);

    [[nodiscard]] qint64 rowCount() const; ///< without the new-record row
    /// 0-based row of the cursor; -1 when there is none.
    [[nodiscard]] qint64 currentRow() const;
    void setCurrentRow(qint64 row);
    /// True while a cell is being edited or a new record is pending.
    [[nodiscard]] bool isEditing() const;
    /// Writes a pending edit; false when it failed (the edit stays, `editFailed` told why).
    bool commitEdit();
    /// Drops a pending edit; raises `addEditCanceled` when there was one.
    void cancelEdit();
    /// Where a cell is painted, in the grid's own coordinates; empty when it is out of view.
    [[nodiscard]] QRect cellRect(qint64 row, int column) const;
    /// Background that a row was painted with last; invalid when it is out of view.
    [[nodiscard]] QColor paintedRowColour(qint64 row) const;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IGridSplits* Splits() override { return this; }
    [[nodiscard]] int splitCount() const override;
    [[nodiscard]] bool fetchesRowStyle(int split) const override;
    void setFetchRowStyle(int split, bool fetch) override;
    [[nodiscard]] bool fetchesCellStyle(int split) const override;
    void setFetchCellStyle(int split, bool fetch) override;
    [[nodiscard]] int columnCount() const override;
    [[nodiscard]] QString columnField(int column) const override;
    [[nodiscard]] bool isColumnVisible(int column) const override;
    [[nodiscard]] int columnOf(const QString& field) const override;
    [[nodiscard]] int currentColumn() const override;
    void setCurrentColumn(int column) override;
    [[nodiscard]] AddNewMode addNewMode() const override;
    void refresh() override;

Q_SIGNALS:
    void headerClicked(const QString& field);
    /// The grid's own pop-up menu is wanted at this place.
    void contextMenuWanted(const QPoint& globalPosition);
    void addEditCanceled();
    void addRowStarted();
    void recordWritten();
    void editFailed(const QString& reason);
    /// The cursor went to another row or cell, by the user or in code.
    void currentCellChanged();
    void rowActivated(); ///< double-click or Enter

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace yrw
