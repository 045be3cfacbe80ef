#pragma once

#include "platform/controls/GridBody.h"

#include <QScrollBar>
#include <QSplitter>
#include <QStandardItemModel>

namespace yrw {

/// One pane: header, rows and its own scroll bar for the columns.
struct GridPane {
    QWidget* frame = nullptr;
    QHeaderView* header = nullptr;
    GridBody* body = nullptr;
    QScrollBar* scroll = nullptr;
};

/// The panes of a record grid, side by side, with the columns that all of them show and the scroll
/// bar of the rows. One pane is the current one: it has the cursor.
///
/// Lifetime: belongs to its grid. Thread: the user-interface thread.
class GridPanes final : public QObject {
    Q_OBJECT

public:
    /// Begins with one pane. `source` answers what the panes ask, and lives as long.
    GridPanes(QWidget& grid, GridSource& source);

    [[nodiscard]] int count() const { return static_cast<int>(m_panes.size()); }
    /// One pane or two; the first is the current one when the second goes.
    void setCount(int count);
    /// The rows of a pane; nothing for a pane that is not there.
    [[nodiscard]] GridBody* body(int split) const;
    [[nodiscard]] GridBody& current() const { return *m_panes.at(m_current).body; }
    void setCurrent(int split) { m_current = split; }

    [[nodiscard]] const QList<GridColumn>& columns() const { return m_columns; }
    void setColumns(const QList<GridColumn>& columns);
    /// The next visible column in a direction (1 or -1); the same one when there is none.
    [[nodiscard]] int nextColumn(int from, int step) const;
    [[nodiscard]] int firstColumn() const { return nextColumn(-1, 1); }
    [[nodiscard]] int lastColumn() const { return nextColumn(int(m_columns.size()), -1); }
    /// Shows an arrow in the column's header; -1 shows none.
    void setSortIndicator(int column, Qt::SortOrder order);

    [[nodiscard]] qint64 topRow() const { return m_scroll->value(); }
    [[nodiscard]] int pageRows() const { return m_scroll->pageStep(); }
    /// Where a cell of the current pane is, in the grid's coordinates; empty out of view.
    [[nodiscard]] QRect cellRect(qint64 row, int column) const;
    /// Scrolls a cell of the current pane into view.
    void show(qint64 row, int column);
    void scroll(const QWheelEvent& event);
    /// Fits the scroll bars to the rows, columns and sizes there are.
    void updateScrollBars();
    void updateAll();
    void updateRow(qint64 row);

Q_SIGNALS:
    void headerClicked(int column);
    void columnResized();
    /// Other rows or columns are in view; `byUser` when not in code.
    void scrolled(bool byUser);

private:
    void add();
    void connectPane(const GridPane& pane);
    void showColumns();
    void sectionResized(const QHeaderView* header, int column, int width);
    void wasScrolled();

    QWidget& m_grid;
    GridSource& m_source;
    QList<GridColumn> m_columns;
    QStandardItemModel m_headers;
    QList<GridPane> m_panes;
    QSplitter* m_splitter;
    QScrollBar* m_scroll;
    int m_current = 0;
    bool m_quiet = false; ///< scrolling in code
    bool m_sizing = false;
};

} // namespace yrw
