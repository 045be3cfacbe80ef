#include "platform/controls/ListModel.h"

#include "platform/forms/Contrast.h"

#include <QFont>
#include <QHash>

#include <algorithm>
#include <utility>

namespace yrw {

namespace {

constexpr QChar kSeparator(u'\x1F');

constexpr size_t kPage = 64; ///< rows fetched together when one is asked for

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
    row.parts += item.key;
    for (const QString& text : item.texts) {
        row.parts += kSeparator;
        row.parts += text;
    }
    if (row.parts.count(kSeparator) != item.texts.size()) {
        row.parts = withoutSeparators(item.key);
        for (const QString& text : item.texts) {
            row.parts += kSeparator + withoutSeparators(text);
        }
    }
    row.bold = item.bold;
    row.marked = item.marked;
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
    m_shown.reset();
    m_missing = 0;
    m_hasFailed = false;
    rowsChanged();
    endResetModel();
}

void ListModel::rowsChanged() {
    m_placesValid = false;
    m_nextToFetch = 0;
    ++m_changes;
}

void ListModel::appendRows(qsizetype count, const std::function<Row(qsizetype)>& make) {
    if (count == 0) {
        return;
    }
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(count) - 1);
    m_rows.reserve(m_rows.size() + size_t(count));
    for (qsizetype i = 0; i < count; ++i) {
        if (m_shown) {
            m_shown->push_back(allRows());
        }
        m_rows.push_back(make(i));
        m_missing += m_rows.back().isWhole ? 0 : 1;
    }
    rowsChanged();
    endInsertRows();
}

void ListModel::append(const QList<ListItem>& items) {
    appendRows(items.size(), [&items](qsizetype i) { return packed(items.at(i)); });
}

void ListModel::appendKeys(const QStringList& keys) {
    appendRows(keys.size(),
               [&keys](qsizetype i) { return Row{keys.at(i), 0, false, false, false, false}; });
}

const ListModel::Row& ListModel::whole(int row) const {
    const Row& wanted = at(row);
    if (!wanted.isWhole && m_source && !m_hasFailed) {
        std::vector<size_t> places;
        for (int next = row; next < rowCount() && places.size() < kPage; ++next) {
            if (!at(next).isWhole) {
                places.push_back(place(next));
            }
        }
        fetch(places);
    }
    return wanted;
}

bool ListModel::fetch(const std::vector<size_t>& places) const {
    QStringList keys;
    QHash<QString, size_t> placeOfKey;
    for (const size_t place : places) {
        keys.append(m_rows[place].parts);
        placeOfKey.insert(m_rows[place].parts, place);
    }
    const std::optional<QList<ListItem>> items = m_source(keys);
    m_hasFailed = !items;
    if (m_hasFailed) {
        return false;
    }
    for (const ListItem& item : *items) {
        if (const auto place = placeOfKey.constFind(item.key); place != placeOfKey.constEnd()) {
            m_rows[*place] = packed(item);
        }
    }
    for (const size_t place : places) {
        m_rows[place].isWhole = true; // also those that are not there any more
    }
    m_missing -= static_cast<int>(places.size());
    return true;
}

bool ListModel::fetchSome(int rows) {
    if (m_missing == 0) {
        return true;
    }
    std::vector<size_t> places;
    for (; places.size() < size_t(rows) && m_nextToFetch < m_rows.size(); ++m_nextToFetch) {
        if (!m_rows[m_nextToFetch].isWhole) {
            places.push_back(m_nextToFetch);
        }
    }
    return m_source && !m_hasFailed && (places.empty() || fetch(places));
}

void ListModel::removeMissing() {
    beginResetModel();
    m_shown.reset();
    std::erase_if(m_rows, [](const Row& row) { return !row.isWhole; });
    m_missing = 0;
    rowsChanged();
    endResetModel();
}

int ListModel::insertSorted(const ListItem& item, int column, Qt::SortOrder order) {
    const auto next =
        std::upper_bound(m_rows.begin(), m_rows.end(), QStringView(item.texts.value(column)),
                         [column, order](QStringView wanted, const Row& row) {
                             const int compared = compareTexts(wanted, part(row, column + 1));
                             return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
                         });
    const int place = static_cast<int>(next - m_rows.begin());
    const int row = rowOfPlace(place);
    beginInsertRows({}, row, row);
    m_rows.insert(next, packed(item));
    if (m_shown) {
        std::for_each(m_shown->begin() + row, m_shown->end(), [](int& each) { ++each; });
        m_shown->insert(m_shown->begin() + row, place);
    }
    rowsChanged();
    endInsertRows();
    return row;
}

void ListModel::remove(const QString& key) {
    const int place = placeOf(key);
    if (place < 0) {
        return;
    }
    const int row = rowOf(key);
    if (row >= 0) {
        beginRemoveRows({}, row, row);
    }
    m_missing -= m_rows[size_t(place)].isWhole ? 0 : 1;
    m_rows.erase(m_rows.begin() + place);
    rowsChanged();
    if (m_shown) {
        const int next = rowOfPlace(place);
        std::for_each(m_shown->begin() + next, m_shown->end(), [](int& each) { --each; });
        if (row >= 0) {
            m_shown->erase(m_shown->begin() + row);
        }
    }
    if (row >= 0) {
        endRemoveRows();
    }
}

void ListModel::showOnly(const std::function<bool(QStringView)>& keeps) {
    beginResetModel();
    std::vector<int>& shown = m_shown.emplace();
    for (size_t place = 0; place < m_rows.size(); ++place) {
        if (keeps(part(m_rows[place], 0))) {
            shown.push_back(static_cast<int>(place));
        }
    }
    endResetModel();
}

void ListModel::showAll() {
    if (m_shown) {
        beginResetModel();
        m_shown.reset();
        endResetModel();
    }
}

void ListModel::forEachKey(const std::function<void(QStringView)>& call) const {
    for (const Row& row : m_rows) {
        call(part(row, 0));
    }
}

int ListModel::rowOfPlace(int place) const {
    return m_shown ? static_cast<int>(std::lower_bound(m_shown->begin(), m_shown->end(), place) -
                                      m_shown->begin())
                   : place;
}

void ListModel::setText(const QString& key, int column, const QString& text) {
    const int row = rowOf(key);
    if (row < 0 || column < 0 || column >= columnCount()) {
        return;
    }
    QStringList parts = whole(row).parts.split(kSeparator);
    while (parts.size() <= column + 1) {
        parts.append(QString());
    }
    parts[column + 1] = withoutSeparators(text);
    m_rows[place(row)].parts = parts.join(kSeparator);
    Q_EMIT dataChanged(index(row, column), index(row, column));
}

void ListModel::setStyle(const QString& key, bool bold, const std::optional<QColor>& foreColour,
                         bool marked) {
    const int row = rowOf(key);
    if (row < 0) {
        return;
    }
    (void)whole(row);
    Row& own = m_rows[place(row)];
    own.bold = bold;
    own.marked = marked;
    own.hasColour = foreColour.has_value();
    own.colour = own.hasColour ? foreColour->rgb() : 0;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

QString ListModel::keyAt(int row) const {
    return row >= 0 && row < rowCount() ? part(at(row), 0).toString() : QString();
}

QString ListModel::text(const QString& key, int column) const {
    const int row = rowOf(key);
    return row < 0 ? QString() : textAt(row, column).toString();
}

bool ListModel::isBold(const QString& key) const {
    const int row = rowOf(key);
    return row >= 0 && whole(row).bold;
}

std::optional<QColor> ListModel::foreColour(const QString& key) const {
    const int row = rowOf(key);
    return row >= 0 && whole(row).hasColour
               ? std::optional<QColor>(QColor::fromRgb(whole(row).colour))
               : std::nullopt;
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

int ListModel::placeOf(const QString& key) const {
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

int ListModel::rowOf(const QString& key) const {
    const int place = placeOf(key);
    if (!m_shown || place < 0) {
        return place;
    }
    const int row = rowOfPlace(place);
    return row < rowCount() && (*m_shown)[size_t(row)] == place ? row : -1;
}

bool ListModel::sortRows(int column, Qt::SortOrder order, const WorkStep& goesOn) {
    std::vector<QStringView> texts;
    texts.reserve(m_rows.size());
    for (const Row& row : m_rows) {
        texts.push_back(part(row, column + 1));
    }
    const quint64 changes = m_changes;
    const std::optional<std::vector<int>> places = orderOf(texts, order, goesOn);
    if (!places || changes != m_changes) {
        return false;
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<Row> sorted;
    sorted.reserve(m_rows.size());
    std::vector<int> placeAfter(m_rows.size());
    for (const int place : *places) {
        placeAfter[size_t(place)] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(m_rows[size_t(place)]));
    }
    m_rows = std::move(sorted);
    rowsChanged();
    moveSelections(placeAfter);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    return true;
}

void ListModel::moveSelections(const std::vector<int>& placeAfter) {
    const QModelIndexList before = persistentIndexList();
    std::vector<int> places;
    for (const QModelIndex& old : before) {
        places.push_back(placeAfter[place(old.row())]);
    }
    if (m_shown) {
        for (int& shown : *m_shown) {
            shown = placeAfter[size_t(shown)];
        }
        std::sort(m_shown->begin(), m_shown->end());
    }
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        after.append(index(rowOfPlace(places[size_t(i)]), before[i].column()));
    }
    changePersistentIndexList(before, after);
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown ? m_shown->size() : m_rows.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ListModel::markData(const QModelIndex& index, int role) const {
    const bool isMark =
        role == Qt::DecorationRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole;
    if (!isMark || index.column() != m_mark.column || !whole(index.row()).marked) {
        return {};
    }
    switch (role) {
    case Qt::DecorationRole:
        return m_mark.icon;
    case Qt::ToolTipRole:
        return m_mark.words;
    default:
        return QString(textAt(index.row(), index.column()) + u", " + m_mark.words);
    }
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::FontRole && role != Qt::ForegroundRole) {
        return markData(index, role);
    }
    const Row& row = whole(index.row());
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
