#pragma once

#include "platform/controls/ListModel.h"

#include <QTimer>
#include <QTreeView>

#include <functional>

namespace yrw {

/// The list view in report style: a header and rows with keys, over a model.
///
/// Sorting compares displayed texts in the order of the user's language and is stable; off
/// until `sortBy`. Typing letters selects the next row that begins with them, in the sorted
/// column before the others.
/// Selecting in code raises no `itemClick`; the user's click, arrow keys and typing do. The menu
/// key and Shift+F10 raise `rightClick` at the selected row, Enter raises `itemDblClick`.
/// Thread: the user-interface thread.
class ListView : public QTreeView {
    Q_OBJECT

public:
    explicit ListView(QWidget* parent = nullptr);
    ~ListView() override;

    /// The rows and columns. Columns, and rows where they are sorted, come and go by the list's own
    /// members.
    [[nodiscard]] ListModel& items() { return m_items; }
    [[nodiscard]] const ListModel& items() const { return m_items; }

    void addColumn(const QString& header, const QString& key, int widthTwips);
    /// Removes a column by key with its texts; no error when it is absent.
    void removeColumn(const QString& key);

    /// Adds many rows in one go.
    void addItems(const QList<ListItem>& items);
    /// Adds rows by their keys alone. The list asks the source for the rest of a row when it is
    /// painted or asked for, for all of them before it sorts, and for a few whenever the program
    /// has nothing else to do, until it has them all.
    void addKeys(const QStringList& keys);
    /// Adds one row at its sorted place (at the end while sorting is off); its row.
    int addItem(const ListItem& item);
    void removeItem(const QString& key) { m_items.remove(key); }
    /// Called at the beginning of each sorting: gives what the sorting reports to, and what may
    /// stop it. A stopped one leaves the list as it was.
    void setWorkWatch(std::function<WorkStep()> begin) { m_beginWork = std::move(begin); }

    /// Key of the selected row; empty when none is.
    [[nodiscard]] QString selectedKey() const;
    /// Selects a row without raising `itemClick`; an absent or empty key selects none.
    void selectKey(const QString& key);

    [[nodiscard]] int sortKey() const { return m_sorting.column; }
    [[nodiscard]] Qt::SortOrder sortOrder() const { return m_sorting.order; }
    [[nodiscard]] bool isSorted() const { return m_sorting.on; }
    /// Sets key and order and turns sorting on, all at once or, when that is stopped, not at all.
    void sortBy(int column, Qt::SortOrder order);
    /// What an empty list shows in its middle.
    void setEmptyText(const QString& text);

Q_SIGNALS:
    void columnClick(int column);
    void itemClick(const QString& key);
    void itemDblClick(const QString& key);
    void rightClick(const QPoint& globalPosition);
    /// The source failed; it is not asked again for the rows that are missing.
    void sourceFailed();

protected:
    void keyboardSearch(const QString& search) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    /// An order that the rows may be in.
    struct Sorting {
        int column = 0;
        Qt::SortOrder order = Qt::AscendingOrder;
        bool on = false;
    };

    void fetchInPassing();
    /// Fetches what is missing; false when it was stopped or failed.
    bool fetchAll(const WorkStep& goesOn);
    /// Sorts as it is wanted now; false when it was stopped.
    bool sortAll();
    /// Sorts after rows were added; when that is stopped they stay as they came.
    void sortAdded();
    /// Goes over to another order; one that is stopped leaves everything as it was.
    void change(const Sorting& to);
    void showIndicator() const;
    [[nodiscard]] int findTyped(int from) const;

    ListModel m_items;
    QTimer m_typing; ///< runs while letters typed belong to one word
    QString m_typed;
    QString m_emptyText;
    QTimer m_fetching; ///< runs while rows are missing
    std::function<WorkStep()> m_beginWork;
    Sorting m_sorting;
};

} // namespace yrw
