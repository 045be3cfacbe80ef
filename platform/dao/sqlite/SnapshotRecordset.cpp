#include "platform/dao/sqlite/SnapshotRecordset.h"

#include <algorithm>
#include <utility>

namespace yrw::dao {

SnapshotRecordset::SnapshotRecordset(SqliteDatabase& database, const Query& query,
                                     const QString& name, int options)
    : RecordsetBase(database, query, name, RecordsetType::Snapshot, options) {
    fill();
}

SnapshotRecordset::SnapshotRecordset(const SnapshotRecordset& other,
                                     std::shared_ptr<const Rows> rows)
    : RecordsetBase(other.database(), other.query(), other.Name(), RecordsetType::Snapshot,
                    other.options()),
      m_rows(std::move(rows)), m_place(-1) {}

void SnapshotRecordset::fill() {
    auto rows = std::make_shared<Rows>();
    connection().beginRead();
    Statement statement = query().rows(connection().handle());
    const auto& items = query().items();
    while (statement.step()) {
        std::vector<QVariant> row;
        row.reserve(items.size());
        for (size_t i = 0; i < items.size(); ++i) {
            row.push_back(statement.value(int(i), items[i].column.type));
        }
        rows->values.push_back(std::move(row));
    }
    m_rows = std::move(rows);
    m_place = 0;
}

bool SnapshotRecordset::AtBof() const {
    requireOpen();
    return m_place < 0 || size() == 0;
}

bool SnapshotRecordset::AtEof() const {
    requireOpen();
    return m_place >= size();
}

void SnapshotRecordset::MoveFirst() {
    requireOpen();
    m_place = 0;
}

void SnapshotRecordset::MoveLast() {
    requireOpen();
    m_place = std::max<qint64>(size() - 1, 0);
}

void SnapshotRecordset::MoveNext() {
    if (AtEof()) {
        raiseNoRecord();
    }
    ++m_place;
}

void SnapshotRecordset::MovePrevious() {
    if (AtBof()) {
        raiseNoRecord();
    }
    --m_place;
}

void SnapshotRecordset::Move(qint64 rows) {
    requireOpen();
    m_place = std::clamp<qint64>(m_place + rows, -1, size());
}

qint64 SnapshotRecordset::RecordCount() const {
    requireOpen();
    return size();
}

qint64 SnapshotRecordset::AbsolutePosition() const {
    requireOpen();
    return onRow() ? m_place : -1;
}

void SnapshotRecordset::setAbsolutePosition(qint64 position) {
    requireOpen();
    if (position < 0 || position >= size()) {
        raiseNoRecord();
    }
    m_place = position;
}

Bookmark SnapshotRecordset::Bookmark() const {
    requireOpen();
    if (!onRow()) {
        raiseNoRecord();
    }
    return m_rows->places.bookmark(m_place);
}

void SnapshotRecordset::setBookmark(yrw::dao::Bookmark bookmark) {
    requireOpen();
    const qint64 place = m_rows->places.place(bookmark);
    if (place < 0) {
        raiseNotBookmarkable();
    }
    m_place = place;
}

Ref<Recordset> SnapshotRecordset::Clone() {
    requireOpen();
    return Ref<Recordset>(new SnapshotRecordset(*this, m_rows));
}

void SnapshotRecordset::Requery() {
    requireOpen();
    fill();
}

QVariant SnapshotRecordset::rowValue(int column) const {
    requireOpen();
    if (!onRow()) {
        raiseNoRecord();
    }
    return m_rows->values[size_t(m_place)][size_t(column)];
}

} // namespace yrw::dao
