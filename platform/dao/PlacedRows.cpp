#include "platform/dao/PlacedRows.h"

#include "platform/collation/TextOrder.h"

#include <algorithm>
#include <utility>

namespace yrw::dao {

namespace {

/// Up to so many rows a text order is that of the user's language; beyond that it would cost more
/// than it is worth, and stays the engine's.
constexpr size_t kMostRowsInLanguageOrder = 100'000;

/// Keys in the engine's order, brought into the language's order of their texts.
std::vector<qint64> inLanguageOrder(const std::vector<qint64>& keys, const QStringList& texts,
                                    bool descending) {
    const std::vector<QStringView> views(texts.begin(), texts.end());
    const auto places =
        orderOf(views, descending ? Qt::DescendingOrder : Qt::AscendingOrder, WorkStep());
    std::vector<qint64> ordered;
    ordered.reserve(keys.size());
    for (const int place : *places) {
        ordered.push_back(keys[size_t(place)]);
    }
    return ordered;
}

/// A key as the engine's rows give it.
QVariant keyValue(qint64 key, std::optional<FieldType> type) {
    const bool small = type == FieldType::Integer && int(key) == key;
    return small ? QVariant(int(key)) : QVariant(key);
}

} // namespace

PlacedRows::PlacedRows(Connection& connection, const Query& query, Kind kind)
    : Rows(connection, query), m_kind(kind), m_keyItem(query.keyItem()) {
    fill();
    toFirst();
}

PlacedRows::PlacedRows(const PlacedRows& other, std::shared_ptr<RowSet> set)
    : Rows(other.connection(), other.query()), m_kind(other.m_kind), m_set(std::move(set)),
      m_keyItem(other.m_keyItem) {}

std::unique_ptr<Rows> PlacedRows::clone() const {
    return std::make_unique<PlacedRows>(*this, m_set);
}

void PlacedRows::fill() {
    connection().beginRead();
    if (m_kind == Kind::Keys) {
        readKeys();
    } else {
        copyRows();
    }
}

void PlacedRows::readKeys() {
    std::vector<qint64> keys;
    QStringList texts;
    const auto& leading = query().leadingText();
    Cursor& statement = query().keys(connection());
    while (statement.step()) {
        keys.push_back(statement.integer(0));
        if (leading && keys.size() <= kMostRowsInLanguageOrder) {
            texts.append(statement.text(1));
        }
    }
    if (leading && keys.size() <= kMostRowsInLanguageOrder) {
        keys = inLanguageOrder(keys, texts, leading->descending);
    }
    m_set = std::make_shared<RowSet>(std::move(keys));
}

void PlacedRows::copyRows() {
    std::vector<RowSet::Row> copies;
    const auto statement = query().rows(connection());
    while (statement->step()) {
        copies.push_back(query().itemsOf(*statement));
    }
    m_set = std::make_shared<RowSet>(std::move(copies));
}

void PlacedRows::refill() {
    fill(); // a new set: clones keep the old one
    m_modified = -1;
    toFirst();
}

bool PlacedRows::isWithin() const noexcept {
    return m_place >= 0 && m_place < m_set->size();
}

bool PlacedRows::atBof() const {
    return m_place < 0 || m_set->count() == 0;
}

bool PlacedRows::atEof() const {
    return m_place >= m_set->size() || m_set->count() == 0;
}

void PlacedRows::standAt(qint64 place) {
    m_place = std::clamp<qint64>(place, -1, m_set->size());
    if (m_kind == Kind::Keys && isWithin()) {
        m_reader.moveTo(m_set->key(m_place));
    }
}

void PlacedRows::seekRow(qint64 place, int direction) {
    for (standAt(place); isWithin(); standAt(m_place + direction)) {
        if (m_set->isGone(m_place)) {
            continue;
        }
        if (m_kind == Kind::Copies || m_reader.load(connection(), query())) {
            return;
        }
        m_set->markGone(m_place);
    }
}

void PlacedRows::move(qint64 rows) {
    if (rows == 0) {
        return;
    }
    const bool before = m_place < 0;
    const qint64 from = before ? -1 : m_set->positionOf(std::min(m_place, m_set->size()));
    // A deleted current row is no row to count from when moving on.
    const bool gone = isWithin() && m_set->isGone(m_place);
    const qint64 to = from + rows - (gone && rows > 0 ? 1 : 0);
    if (to < 0 || to >= m_set->count()) {
        standAt(to < 0 ? -1 : m_set->size());
        return;
    }
    standAt(m_set->placeAt(to));
}

qint64 PlacedRows::position() const {
    return isWithin() && !m_set->isGone(m_place) ? m_set->positionOf(m_place) : -1;
}

void PlacedRows::requireRow() const {
    if (!isWithin() || m_set->isGone(m_place)) {
        raiseNoRecord();
    }
}

Bookmark PlacedRows::bookmark() const {
    requireRow();
    return m_set->bookmark(m_place);
}

qint64 PlacedRows::placeOf(Bookmark bookmark) const {
    return m_set->place(bookmark);
}

Bookmark PlacedRows::lastModified() const {
    return m_modified < 0 ? Bookmark() : m_set->bookmark(m_modified);
}

QVariant PlacedRows::value(int column) const {
    requireRow();
    if (m_kind == Kind::Copies) {
        return m_set->copy(m_place)[size_t(column)];
    }
    if (column == m_keyItem) {
        return keyValue(m_set->key(m_place), query().items()[size_t(column)].column.type);
    }
    return m_reader.value(connection(), query(), column);
}

qint64 PlacedRows::key() const {
    requireRow();
    return m_set->key(m_place);
}

void PlacedRows::changed() {
    m_modified = m_place;
    m_reader.forget();
}

void PlacedRows::added(qint64 key) {
    const bool behind = m_place >= m_set->size() && m_set->size() > 0;
    m_modified = m_set->append(key);
    if (behind) {
        m_place = m_set->size();
    }
}

void PlacedRows::deleted() {
    m_set->markGone(m_place);
    m_reader.forget();
}

void PlacedRows::drop() noexcept {
    m_reader.close();
    m_set.reset();
}

} // namespace yrw::dao
