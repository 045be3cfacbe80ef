#pragma once

#include "platform/controls/ListView.h"

#include <QAbstractTableModel>
#include <QHash>

namespace yrw {

/// Rows and columns of a `ListView`, kept in the order shown.
///
/// Thread: the user-interface thread.
class ListModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void addColumn(const QString& header, const QString& key);
    /// 0-based; the texts of the column go with it.
    void removeColumn(int column);
    [[nodiscard]] int columnOf(const QString& key) const;

    void clear();
    void append(QList<ListItem> items);
    void insert(int row, ListItem item);
    void remove(int row);
    void setText(int row, int column, const QString& text);
    void setStyle(int row, bool bold, const std::optional<QColor>& foreColour);

    [[nodiscard]] const ListItem& item(int row) const { return m_items.at(row); }
    /// Row of a key, -1 when absent.
    [[nodiscard]] int rowOf(const QString& key) const;
    [[nodiscard]] QString textAt(int row, int column) const {
        return m_items.at(row).texts.value(column);
    }

    /// Sorts by a column, keeping the order of rows with equal texts.
    void sortRows(int column, Qt::SortOrder order);
    /// Row at which a text belongs among sorted rows: behind those with the same text.
    [[nodiscard]] int sortedPlace(const QString& text, int column, Qt::SortOrder order) const;
    /// Colours are painted so that they can be read on this background.
    void setBackground(const QColor& colour) { m_background = colour; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    struct Column {
        QString header;
        QString key;
    };

    void moveSelections(const QList<int>& order);

    QList<Column> m_columns;
    QList<ListItem> m_items;
    QColor m_background = Qt::white;
    mutable QHash<QString, int> m_rows; ///< made anew when rows moved
    mutable bool m_rowsValid = true;
};

} // namespace yrw
