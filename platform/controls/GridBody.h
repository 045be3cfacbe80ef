#pragma once

#include "platform/controls/GridColumn.h"
#include "platform/controls/GridRows.h"
#include "platform/controls/api/IRecordGrid.h"

#include <QHash>
#include <QHeaderView>
#include <QWidget>

#include <utility>

class QHelpEvent;

namespace yrw {

/// What a pane of the grid needs to know to paint and to pass on the mouse.
///
/// Thread: the user-interface thread.
class GridSource {
public:
    virtual ~GridSource();
    [[nodiscard]] virtual GridRows& rows() = 0;
    /// Whose style events are raised.
    [[nodiscard]] virtual IRecordGrid& grid() = 0;
    /// What screen readers call the grid.
    [[nodiscard]] virtual QString gridName() const = 0;
    [[nodiscard]] virtual const QList<GridColumn>& gridColumns() const = 0;
    /// Field position of a column, -1 when the recordset does not have its field.
    [[nodiscard]] virtual int fieldOf(int column) const = 0;
    [[nodiscard]] virtual qint64 topRow() const = 0;
    /// Rows with the new-record row.
    [[nodiscard]] virtual qint64 shownRows() const = 0;
    [[nodiscard]] virtual qint64 cursorRow() const = 0;
    [[nodiscard]] virtual int cursorColumn() const = 0;
    [[nodiscard]] virtual int rowHeight() const = 0;
    [[nodiscard]] virtual bool hasKeyFocus() const = 0;

    virtual void bodyPressed(int split, qint64 row, int column) = 0;
    virtual void bodyDoubleClicked(qint64 row) = 0;
    virtual void bodyWheel(QWheelEvent* event) = 0;
    virtual void bodyResized() = 0;
    /// Tab (or Backtab) was pressed; false when the focus should leave the grid.
    virtual bool tabPressed(bool forward) = 0;
    virtual void menuWanted(const QPoint& globalPosition) = 0;
};

/// The rows of one pane. Paints each row that is in view when it is asked to, and only those.
///
/// Thread: the user-interface thread.
class GridBody final : public QWidget {
    Q_OBJECT

public:
    GridBody(GridSource& source, int split, QHeaderView& header, QWidget* parent);

    bool fetchesRowStyle = false;
    bool fetchesCellStyle = false;

    /// Width of the column of row marks at the left, which the first pane alone has.
    [[nodiscard]] int markWidth() const noexcept { return m_split == 0 ? kMarkWidth : 0; }
    /// Where a cell is, in the pane's coordinates; empty when it is out of view.
    [[nodiscard]] QRect cellRect(qint64 row, int column) const;
    [[nodiscard]] QRect rowRect(qint64 row) const;
    /// Row at a height, -1 below the last.
    [[nodiscard]] qint64 rowAt(int y) const;
    [[nodiscard]] QColor paintedColour(qint64 row) const;
    /// Rows that fit whole.
    [[nodiscard]] int fullRows() const;
    // What screen readers ask.
    [[nodiscard]] QString gridName() const { return m_source.gridName(); }
    [[nodiscard]] qint64 firstRow() const { return m_source.topRow(); }
    [[nodiscard]] int rowsInView() const;
    [[nodiscard]] qint64 cursorRow() const { return m_source.cursorRow(); }
    [[nodiscard]] bool isCursorRow(qint64 row) const { return row == cursorRow(); }
    /// The row's cells as "Header text", and the cell under the cursor alone.
    [[nodiscard]] QString rowText(qint64 row) const;
    [[nodiscard]] QString cursorText(qint64 row) const;
    /// What the host's add-ins say of the row, one line each; nothing for most rows.
    [[nodiscard]] QStringList rowRemark(qint64 row, bool withDetails) const;
    /// Tells screen readers that the cursor moved.
    void announceCursor();

    void forgetColours() { m_painted.clear(); }

    static constexpr int kMarkWidth = 20;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void showRemark(const QHelpEvent& event);
    [[nodiscard]] QString cellText(int column) const;
    void paintRow(QPainter& painter, qint64 row, const QRect& dirty);
    void paintCells(QPainter& painter, qint64 row, bool readable, const QColor& back,
                    const QRect& dirty);
    void paintCell(QPainter& painter, const QRect& rect, int column, bool readable);
    void paintMark(QPainter& painter, qint64 row, const QColor& back) const;
    void paintCursor(QPainter& painter, qint64 row) const;
    [[nodiscard]] std::pair<QColor, QColor> frameColours(qint64 row) const;
    [[nodiscard]] QColor rowColour(qint64 row, bool readable);
    [[nodiscard]] CellStyle cellStyle(int column);

    GridSource& m_source;
    int m_split;
    QHeaderView& m_header;
    QHash<qint64, QColor> m_painted;
    RowFinding m_finding;  ///< of the row that is being painted
    bool m_marked = false; ///< a handler coloured that row
};

} // namespace yrw
