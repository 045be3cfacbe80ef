#include "platform/controls/ListModel.h"

#include "platform/controls/Colours.h"

#include <QFont>

#include <algorithm>
#include <numeric>
#include <utility>

namespace yrw {

namespace {

constexpr QChar kSeparator(u'\x1F');

int compareTexts(QStringView a, QStringView b) {
    const int folded = a.compare(b, Qt::CaseInsensitive);
    return folded != 0 ? folded : a.compare(b, Qt::CaseSensitive);
}

QString withoutSeparators(QString text) {
    return text.contains(kSeparator) ? text.replace(kSeparator, u' ') : text;
}

QFont boldFont() {
    QFont font;
    font.setBold(true);
    return font;
}

} // namespace

ListModel::Row ListModel::packed(const ListItem& item) {
    qsizetype length = item.key.size() + item.texts.size();
    for (const QString& text : item.texts) {
        length += text.size();
    }
    Row row;
    row.parts.reserve(length);
    row.parts += withoutSeparators(item.key);
    for (const QString& text : item.texts) {
        row.parts += kSeparator;
        row.parts += withoutSeparators(text);
    }
    row.bold = item.bold;
    row.hasColour = item.foreColour.has_value();
    row.colour = row.hasColour ? item.foreColour->rgb() : 0;
    return row;
}

QStringView ListModel::part(const Row& row, int index) {
    const QStringView all(row.parts);
    qsizetype start = 0;
    for (; index > 0; --index) {
        const qsizetype end = all.indexOf(kSeparator, start);
        if (end < 0) {
            return {};
        }
        start = end + 1;
    }
    const qsizetype end = all.indexOf(kSeparator, start);
    return all.mid(start, end < 0 ? -1 : end - start);
}

void ListModel::addColumn(const QString& header, const QString& key) {
    const int column = static_cast<int>(m_columns.size());
    beginInsertColumns({}, column, column);
    m_columns.append({header, key});
    endInsertColumns();
}

void ListModel::removeColumn(int column) {
    beginRemoveColumns({}, column, column);
    m_columns.removeAt(column);
    for (Row& row : m_rows) {
        QStringList parts = row.parts.split(kSeparator);
        if (column + 1 < parts.size()) {
            parts.removeAt(column + 1);
            row.parts = parts.join(kSeparator);
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
    m_rows = {};
    m_placesValid = false;
    endResetModel();
}

void ListModel::append(const QList<ListItem>& items) {
    if (items.isEmpty()) {
        return;
    }
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(items.size()) - 1);
    m_rows.reserve(m_rows.size() + size_t(items.size()));
    for (const ListItem& item : items) {
        m_rows.push_back(packed(item));
    }
    m_placesValid = false;
    endInsertRows();
}

void ListModel::insert(int row, const ListItem& item) {
    beginInsertRows({}, row, row);
    m_rows.insert(m_rows.begin() + row, packed(item));
    m_placesValid = false;
    endInsertRows();
}

void ListModel::remove(int row) {
    beginRemoveRows({}, row, row);
    m_rows.erase(m_rows.begin() + row);
    m_placesValid = false;
    endRemoveRows();
}

void ListModel::setText(int row, int column, const QString& text) {
    QString& own = m_rows[size_t(row)].parts;
    QStringList parts = own.split(kSeparator);
    while (parts.size() <= column + 1) {
        parts.append(QString());
    }
    parts[column + 1] = withoutSeparators(text);
    own = parts.join(kSeparator);
    Q_EMIT dataChanged(index(row, column), index(row, column));
}

void ListModel::setStyle(int row, bool bold, const std::optional<QColor>& foreColour) {
    Row& own = m_rows[size_t(row)];
    own.bold = bold;
    own.hasColour = foreColour.has_value();
    own.colour = own.hasColour ? foreColour->rgb() : 0;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

std::optional<QColor> ListModel::foreColour(int row) const {
    const Row& own = m_rows[size_t(row)];
    return own.hasColour ? std::optional<QColor>(QColor::fromRgb(own.colour)) : std::nullopt;
}

void ListModel::indexKeys() const {
    m_places.clear();
    m_places.reserve(m_rows.size());
    for (size_t row = 0; row < m_rows.size(); ++row) {
        m_places.emplace_back(qHash(part(m_rows[row], 0)), static_cast<int>(row));
    }
    std::sort(m_places.begin(), m_places.end());
    m_placesValid = true;
}

int ListModel::rowOf(const QString& key) const {
    if (!m_placesValid) {
        indexKeys();
    }
    const size_t hash = qHash(QStringView(key));
    auto place = std::lower_bound(m_places.begin(), m_places.end(), std::make_pair(hash, 0));
    for (; place != m_places.end() && place->first == hash; ++place) {
        if (part(m_rows[size_t(place->second)], 0) == key) {
            return place->second;
        }
    }
    return -1;
}

void ListModel::sortRows(int column, Qt::SortOrder order) {
    std::vector<int> rows(m_rows.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::vector<QStringView> texts;
    texts.reserve(m_rows.size());
    for (const Row& row : m_rows) {
        texts.push_back(part(row, column + 1));
    }
    const auto compared = [&texts](int a, int b) {
        return compareTexts(texts[size_t(a)], texts[size_t(b)]);
    };
    const bool ascending = order == Qt::AscendingOrder;
    std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) {
        return ascending ? compared(a, b) < 0 : compared(b, a) < 0;
    });
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<Row> sorted;
    sorted.reserve(m_rows.size());
    for (const int row : rows) {
        sorted.push_back(std::move(m_rows[size_t(row)]));
    }
    m_rows = std::move(sorted);
    m_placesValid = false;
    moveSelections(rows);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ListModel::moveSelections(const std::vector<int>& order) {
    const QModelIndexList before = persistentIndexList();
    if (before.isEmpty()) {
        return;
    }
    std::vector<int> place(order.size());
    for (size_t i = 0; i < order.size(); ++i) {
        place[size_t(order[i])] = static_cast<int>(i);
    }
    QModelIndexList after;
    for (const QModelIndex& old : before) {
        after.append(index(place[size_t(old.row())], old.column()));
    }
    changePersistentIndexList(before, after);
}

int ListModel::sortedPlace(QStringView text, int column, Qt::SortOrder order) const {
    const auto first = std::upper_bound(
        m_rows.begin(), m_rows.end(), text, [column, order](QStringView wanted, const Row& row) {
            const int compared = compareTexts(wanted, part(row, column + 1));
            return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
        });
    return static_cast<int>(first - m_rows.begin());
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const Row& row = m_rows[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return part(row, index.column() + 1).toString();
    case Qt::FontRole:
        return row.bold ? QVariant(boldFont()) : QVariant();
    case Qt::ForegroundRole:
        return row.hasColour ? QVariant(readableOn(m_background, QColor::fromRgb(row.colour)))
                             : QVariant();
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
