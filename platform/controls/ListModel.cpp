#include "platform/controls/ListModel.h"

#include "platform/controls/Colours.h"

#include <QFont>

#include <algorithm>
#include <numeric>
#include <utility>

namespace yrw {

namespace {

int compareTexts(const QString& a, const QString& b) {
    const int folded = QString::compare(a, b, Qt::CaseInsensitive);
    return folded != 0 ? folded : QString::compare(a, b, Qt::CaseSensitive);
}

QFont boldFont() {
    QFont font;
    font.setBold(true);
    return font;
}

} // namespace

void ListModel::addColumn(const QString& header, const QString& key) {
    const int column = static_cast<int>(m_columns.size());
    beginInsertColumns({}, column, column);
    m_columns.append({header, key});
    endInsertColumns();
}

void ListModel::removeColumn(int column) {
    beginRemoveColumns({}, column, column);
    m_columns.removeAt(column);
    for (ListItem& item : m_items) {
        if (column < item.texts.size()) {
            item.texts.removeAt(column);
        }
    }
    endRemoveColumns();
}

int ListModel::columnOf(const QString& key) const {
    for (int i = 0; i < m_columns.size(); ++i) {
        if (m_columns.at(i).key == key) {
            return i;
        }
    }
    return -1;
}

void ListModel::clear() {
    beginResetModel();
    m_items.clear();
    m_rows.clear();
    m_rowsValid = true;
    endResetModel();
}

void ListModel::append(QList<ListItem> items) {
    if (items.isEmpty()) {
        return;
    }
    const int first = static_cast<int>(m_items.size());
    beginInsertRows({}, first, first + static_cast<int>(items.size()) - 1);
    if (m_items.isEmpty()) {
        m_items = std::move(items);
    } else {
        m_items.append(std::move(items));
    }
    m_rowsValid = false;
    endInsertRows();
}

void ListModel::insert(int row, ListItem item) {
    beginInsertRows({}, row, row);
    m_items.insert(row, std::move(item));
    m_rowsValid = false;
    endInsertRows();
}

void ListModel::remove(int row) {
    beginRemoveRows({}, row, row);
    m_items.removeAt(row);
    m_rowsValid = false;
    endRemoveRows();
}

void ListModel::setText(int row, int column, const QString& text) {
    QStringList& texts = m_items[row].texts;
    while (texts.size() <= column) {
        texts.append(QString());
    }
    texts[column] = text;
    Q_EMIT dataChanged(index(row, column), index(row, column));
}

void ListModel::setStyle(int row, bool bold, const std::optional<QColor>& foreColour) {
    m_items[row].bold = bold;
    m_items[row].foreColour = foreColour;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int ListModel::rowOf(const QString& key) const {
    if (!m_rowsValid) {
        m_rows.clear();
        m_rows.reserve(m_items.size());
        for (int i = 0; i < m_items.size(); ++i) {
            m_rows.insert(m_items.at(i).key, i);
        }
        m_rowsValid = true;
    }
    return m_rows.value(key, -1);
}

void ListModel::sortRows(int column, Qt::SortOrder order) {
    QList<int> rows(m_items.size());
    std::iota(rows.begin(), rows.end(), 0);
    const auto before = [this, column](int a, int b) {
        return compareTexts(textAt(a, column), textAt(b, column)) < 0;
    };
    if (order == Qt::AscendingOrder) {
        std::stable_sort(rows.begin(), rows.end(), before);
    } else {
        std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) { return before(b, a); });
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QList<ListItem> sorted;
    sorted.reserve(m_items.size());
    for (const int row : std::as_const(rows)) {
        sorted.append(std::move(m_items[row]));
    }
    m_items = std::move(sorted);
    m_rowsValid = false;
    moveSelections(rows);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ListModel::moveSelections(const QList<int>& order) {
    const QModelIndexList before = persistentIndexList();
    if (before.isEmpty()) {
        return;
    }
    QList<int> place(order.size());
    for (int i = 0; i < order.size(); ++i) {
        place[order.at(i)] = i;
    }
    QModelIndexList after;
    for (const QModelIndex& old : before) {
        after.append(index(place.at(old.row()), old.column()));
    }
    changePersistentIndexList(before, after);
}

int ListModel::sortedPlace(const QString& text, int column, Qt::SortOrder order) const {
    const auto first =
        std::upper_bound(m_items.begin(), m_items.end(), text,
                         [column, order](const QString& wanted, const ListItem& item) {
                             const int compared = compareTexts(wanted, item.texts.value(column));
                             return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
                         });
    return static_cast<int>(first - m_items.begin());
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const ListItem& item = m_items.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return item.texts.value(index.column());
    case Qt::FontRole:
        return item.bold ? QVariant(boldFont()) : QVariant();
    case Qt::ForegroundRole:
        return item.foreColour ? QVariant(readableOn(m_background, *item.foreColour)) : QVariant();
    default:
        return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return m_columns.at(section).header;
    }
    return role == Qt::TextAlignmentRole ? QVariant(int(Qt::AlignLeft | Qt::AlignVCenter))
                                         : QVariant();
}

} // namespace yrw
