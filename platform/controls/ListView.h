#pragma once

#include "platform/collation/TextOrder.h"

#include <QColor>
#include <QTreeView>

#include <functional>
#include <memory>
#include <optional>

namespace yrw {

/// One row of a list view.
struct ListItem {
    QString key;       ///< unique in the list, e.g. "xn17"
    QStringList texts; ///< one per column, in the order the columns were added
    bool bold = false;
    std::optional<QColor> foreColour;
    bool marked = false; ///< shows the list's mark
};

/// Gives rows by their keys; one that is left out stays without texts. Nothing means that they
/// could not be read. It is called while the list paints: it opens no window and raises nothing.
using ListSource = std::function<std::optional<QList<ListItem>>(const QStringList& keys)>;

/// The list view in report style: a header and rows with keys, over a model.
///
/// Rows are numbered from 0 in the order shown. Columns have keys; texts of a removed column go
/// with it. Sorting compares displayed texts in the order of the user's language and is stable; off
/// until `setSorting`. Typing letters selects the next row that begins with them, in the sorted
/// column before the others.
/// Selecting in code raises no `itemClick`; the user's click, arrow keys and typing do. The menu
/// key and Shift+F10 raise `rightClick` at the selected row, Enter raises `itemDblClick`.
/// Thread: the user-interface thread.
class ListView : public QTreeView {
    Q_OBJECT

public:
    explicit ListView(QWidget* parent = nullptr);
    ~ListView() override;

    void addColumn(const QString& header, const QString& key, int widthTwips);
    /// Removes a column by key; no error when it is absent.
    void removeColumn(const QString& key);
    /// Position of a column by key, -1 when absent.
    [[nodiscard]] int columnOf(const QString& key) const;
    [[nodiscard]] int columns() const;

    void clearItems();
    /// Adds many rows in one go.
    void addItems(const QList<ListItem>& items);
    /// Adds rows by their keys alone. The list asks the source for the rest of a row when it is
    /// painted or asked for, for all of them before it sorts, and for a few whenever the program
    /// has nothing else to do, until it has them all.
    void addKeys(const QStringList& keys);
    void setSource(ListSource source);
    /// Rows that are known by their keys alone so far.
    [[nodiscard]] int missingItems() const;
    /// Removes the rows that are known by their keys alone.
    void removeMissing();
    /// Called at the beginning of each sorting: gives what the sorting reports to, and what may
    /// stop it. A stopped one leaves the list as it was.
    void setWorkWatch(std::function<WorkStep()> begin);
    /// Adds one row at its sorted place (at the end while sorting is off); its row.
    int addItem(const ListItem& item);
    void removeItem(const QString& key);
    /// Shows only the rows whose keys are kept, in their order; nothing is selected then. The
    /// others stay in the list, out of sight: rows and counts speak of those shown. Rows added are
    /// shown.
    void showOnly(const std::function<bool(QStringView key)>& keeps);
    void showAll();
    /// Calls for the key of every row, also of those out of sight.
    void forEachKey(const std::function<void(QStringView key)>& call) const;
    [[nodiscard]] int allItems() const; ///< rows with those out of sight
    [[nodiscard]] int itemCount() const;
    /// Row of a key, -1 when it is absent or out of sight.
    [[nodiscard]] int rowOf(const QString& key) const;
    [[nodiscard]] QString keyAt(int row) const;
    [[nodiscard]] QString text(const QString& key, int column) const;
    void setItemText(const QString& key, int column, const QString& text);
    void setItemStyle(const QString& key, bool bold, const std::optional<QColor>& foreColour,
                      bool marked = false);
    /// What marked rows show before the text of a column, and what screen readers and the tool-tip
    /// say of them.
    void setMark(int column, const QIcon& icon, const QString& words);
    [[nodiscard]] bool isBold(const QString& key) const;
    [[nodiscard]] std::optional<QColor> foreColour(const QString& key) const;

    /// Key of the selected row; empty when none is.
    [[nodiscard]] QString selectedKey() const;
    /// Selects a row without raising `itemClick`; an absent or empty key selects none.
    void selectKey(const QString& key);

    [[nodiscard]] int sortKey() const; ///< column
    void setSortKey(int column);
    [[nodiscard]] Qt::SortOrder sortOrder() const;
    void setSortOrder(Qt::SortOrder order);
    [[nodiscard]] bool isSorted() const;
    void setSorted(bool sorted);
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
    void sortAdded();

    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace yrw
