#pragma once

#include "platform/controls/GridEditor.h"
#include "platform/controls/GridPanes.h"
#include "platform/controls/RecordGrid.h"

#include <QPointer>

#include <optional>
#include <utility>

namespace yrw {

/// The cursor of a record grid, and the edit of its row.
class RecordGrid::Private final : public QObject, public GridSource {
    Q_OBJECT

public:
    explicit Private(RecordGrid& owner);

    // Rows and columns.
    void setRecordset(const Ref<dao::Recordset>& recordset);
    void setColumns(const QList<GridColumn>& wanted);
    void setAllowAddNew(bool allow);
    void setSplitCount(int count);
    [[nodiscard]] GridPanes& panes() { return m_panes; }

    // Cursor.
    /// Goes to a cell after writing the edit of the row left; false when that failed.
    bool moveTo(qint64 row, int column);
    bool handleKey(const QKeyEvent& event);
    [[nodiscard]] AddNewMode addNewMode() const;

    // Edit.
    [[nodiscard]] bool isEditing() const { return m_rows.isEditing() || !m_editor.isNull(); }
    bool openEditor(const QString* typed);
    bool closeEditor();
    bool commitEdit();
    void cancelEdit();

    // What the panes ask.
    [[nodiscard]] GridRows& rows() override { return m_rows; }
    [[nodiscard]] IRecordGrid& grid() override { return m_grid; }
    [[nodiscard]] QString gridName() const override { return m_grid.accessibleName(); }
    [[nodiscard]] const QList<GridColumn>& gridColumns() const override {
        return m_panes.columns();
    }
    [[nodiscard]] int fieldOf(int column) const override { return m_fields.value(column, -1); }
    [[nodiscard]] qint64 topRow() const override { return m_panes.topRow(); }
    [[nodiscard]] qint64 shownRows() const override;
    [[nodiscard]] qint64 cursorRow() const override { return m_row; }
    [[nodiscard]] int cursorColumn() const override { return m_column; }
    [[nodiscard]] int rowHeight() const override;
    [[nodiscard]] bool hasKeyFocus() const override;
    void bodyPressed(int split, qint64 row, int column) override;
    void bodyDoubleClicked(qint64 row) override;
    void bodyWheel(QWheelEvent* event) override;
    void bodyResized() override;
    bool tabPressed(bool forward) override;
    void menuWanted(const QPoint& globalPosition) override;

private:
    void bindFields();
    void startAt(qint64 row);
    [[nodiscard]] bool canAddNew() const;
    /// Last row that the cursor can go to: while a new record is typed, the one that follows it.
    [[nodiscard]] qint64 lastRow() const;
    /// Row and column that a key leads to, the row perhaps beyond the ends; nothing for other keys.
    [[nodiscard]] std::optional<std::pair<qint64, int>> cellForKey(const QKeyEvent& event) const;
    bool editKey(const QKeyEvent& event);
    /// Begins the edit of the cursor's row.
    bool startEdit();
    bool applyText(int column, const QString& text);
    bool commitRow();
    void connectEditor();
    void placeEditor();
    void dropEditor();
    void failEdit(const QString& reason);

    RecordGrid& m_grid;
    GridRows m_rows;
    GridPanes m_panes;
    QList<int> m_fields; ///< position of each column's field in the recordset, -1 without
    QPointer<GridEditor> m_editor;
    QString m_textBefore; ///< of the cell being edited
    qint64 m_row = -1;
    int m_column = -1;
    dao::Bookmark m_bookmark; ///< of the cursor's row; null for the new record
    bool m_allowAddNew = false;
};

} // namespace yrw
