#include "platform/dao/sqlite/KeysetRecordset.h"

#include "platform/collation/TextOrder.h"
#include "platform/component/AutomationError.h"

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

KeysetRecordset::KeysetRecordset(SqliteDatabase& database, const Query& query, const QString& name,
                                 int options)
    : RecordsetBase(database, query, name, RecordsetType::Dynaset, options),
      m_keyItem(query.keyItem()) {
    fill();
    seekRow(0, 1);
}

KeysetRecordset::KeysetRecordset(const KeysetRecordset& other, std::shared_ptr<Keyset> keys)
    : RecordsetBase(other.database(), other.query(), other.Name(), RecordsetType::Dynaset,
                    other.options()),
      m_keys(std::move(keys)), m_keyItem(other.m_keyItem) {}

void KeysetRecordset::fill() {
    std::vector<qint64> keys;
    QStringList texts;
    const auto& leading = query().leadingText();
    connection().beginRead();
    Statement& statement = connection().kept(query().keysSql(), query().origin());
    query().bindTo(statement);
    while (statement.step()) {
        keys.push_back(statement.integer(0));
        if (leading && keys.size() <= kMostRowsInLanguageOrder) {
            texts.append(statement.text(1));
        }
    }
    if (leading && keys.size() <= kMostRowsInLanguageOrder) {
        keys = inLanguageOrder(keys, texts, leading->descending);
    }
    m_keys = std::make_shared<Keyset>(std::move(keys));
}

bool KeysetRecordset::onRow() const noexcept {
    return m_place >= 0 && m_place < m_keys->size();
}

bool KeysetRecordset::AtBof() const {
    requireOpen();
    return m_place < 0 || m_keys->count() == 0;
}

bool KeysetRecordset::AtEof() const {
    requireOpen();
    return m_place >= m_keys->size() || m_keys->count() == 0;
}

void KeysetRecordset::standAt(qint64 place) {
    leaveRow();
    m_place = std::clamp<qint64>(place, -1, m_keys->size());
    if (onRow()) {
        m_reader.moveTo(m_keys->key(m_place));
    }
}

void KeysetRecordset::seekRow(qint64 place, int direction) {
    for (standAt(place); onRow(); standAt(m_place + direction)) {
        if (m_keys->isGone(m_place)) {
            continue;
        }
        if (m_reader.load(connection(), query())) {
            return;
        }
        m_keys->markGone(m_place);
    }
}

void KeysetRecordset::MoveFirst() {
    requireOpen();
    seekRow(0, 1);
}

void KeysetRecordset::MoveLast() {
    requireOpen();
    seekRow(m_keys->size() - 1, -1);
}

void KeysetRecordset::MoveNext() {
    if (AtEof()) {
        raiseNoRecord();
    }
    seekRow(m_place + 1, 1);
}

void KeysetRecordset::MovePrevious() {
    if (AtBof()) {
        raiseNoRecord();
    }
    seekRow(m_place - 1, -1);
}

void KeysetRecordset::Move(qint64 rows) {
    requireOpen();
    if (rows == 0) {
        leaveRow();
        return;
    }
    const bool before = m_place < 0;
    const qint64 from = before ? -1 : m_keys->positionOf(std::min(m_place, m_keys->size()));
    // A deleted current row is no row to count from when moving on.
    const bool gone = onRow() && m_keys->isGone(m_place);
    const qint64 to = from + rows - (gone && rows > 0 ? 1 : 0);
    if (to < 0 || to >= m_keys->count()) {
        standAt(to < 0 ? -1 : m_keys->size());
        return;
    }
    standAt(m_keys->placeAt(to));
}

qint64 KeysetRecordset::RecordCount() const {
    requireOpen();
    return m_keys->count();
}

qint64 KeysetRecordset::AbsolutePosition() const {
    requireOpen();
    return onRow() && !m_keys->isGone(m_place) ? m_keys->positionOf(m_place) : -1;
}

void KeysetRecordset::setAbsolutePosition(qint64 position) {
    requireOpen();
    if (position < 0 || position >= m_keys->count()) {
        raiseNoRecord();
    }
    standAt(m_keys->placeAt(position));
}

Bookmark KeysetRecordset::Bookmark() const {
    requireOpen();
    if (!onRow() || m_keys->isGone(m_place)) {
        raiseNoRecord();
    }
    return m_keys->bookmark(m_place);
}

void KeysetRecordset::setBookmark(yrw::dao::Bookmark bookmark) {
    requireOpen();
    const qint64 place = m_keys->place(bookmark);
    if (place < 0) {
        raiseNotBookmarkable();
    }
    standAt(place);
}

Bookmark KeysetRecordset::LastModified() const {
    requireOpen();
    if (m_modified < 0) {
        raiseNoRecord();
    }
    return m_keys->bookmark(m_modified);
}

Ref<Recordset> KeysetRecordset::Clone() {
    requireOpen();
    return Ref<Recordset>(new KeysetRecordset(*this, m_keys));
}

void KeysetRecordset::Requery() {
    requireOpen();
    leaveRow();
    fill(); // a new set: clones keep the old one
    m_modified = -1;
    seekRow(0, 1);
}

QVariant KeysetRecordset::rowValue(int column) const {
    requireOpen();
    bool found = onRow() && !m_keys->isGone(m_place);
    QVariant value;
    if (found && column == m_keyItem) {
        return keyValue(m_keys->key(m_place), query().items()[size_t(column)].column.type);
    }
    if (found) {
        value = m_reader.value(connection(), query(), column, found);
    }
    if (!found) {
        raiseNoRecord();
    }
    return value;
}

qint64 KeysetRecordset::currentKey() const {
    if (!onRow() || m_keys->isGone(m_place)) {
        raiseNoRecord();
    }
    return m_keys->key(m_place);
}

void KeysetRecordset::rowChanged() {
    m_modified = m_place;
    m_reader.forget();
}

void KeysetRecordset::rowAdded(qint64 key) {
    const bool behind = m_place >= m_keys->size() && m_keys->size() > 0;
    m_modified = m_keys->append(key);
    if (behind) {
        m_place = m_keys->size();
    }
}

void KeysetRecordset::rowDeleted() {
    m_keys->markGone(m_place);
    m_reader.forget();
}

void KeysetRecordset::dropRows() noexcept {
    m_reader.close();
}

} // namespace yrw::dao
