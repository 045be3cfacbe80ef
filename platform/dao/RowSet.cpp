#include "platform/dao/RowSet.h"

#include <algorithm>
#include <utility>

namespace yrw::dao {

namespace {

// A bookmark holds a set's tag above a place of up to 2^40.
constexpr int kPlaceBits = 40;
constexpr qint64 kPlaceMask = (qint64(1) << kPlaceBits) - 1;
constexpr qint64 kTags = (qint64(1) << (62 - kPlaceBits)) - 1;

qint64 nextTag() {
    static qint64 last = 0;
    last = last % kTags + 1;
    return last;
}

} // namespace

RowSet::RowSet(std::vector<qint64> keys) : m_keys(std::move(keys)), m_tag(nextTag()) {}
RowSet::RowSet(std::vector<Row> copies) : m_copies(std::move(copies)), m_tag(nextTag()) {}

bool RowSet::isGone(qint64 place) const noexcept {
    return std::binary_search(m_gone.begin(), m_gone.end(), place);
}

void RowSet::markGone(qint64 place) {
    const auto at = std::lower_bound(m_gone.begin(), m_gone.end(), place);
    if (at == m_gone.end() || *at != place) {
        m_gone.insert(at, place);
    }
}

qint64 RowSet::append(qint64 key) {
    m_keys.push_back(key);
    return size() - 1;
}

qint64 RowSet::positionOf(qint64 place) const noexcept {
    return place - (std::lower_bound(m_gone.begin(), m_gone.end(), place) - m_gone.begin());
}

qint64 RowSet::placeAt(qint64 position) const noexcept {
    qint64 place = position;
    for (const qint64 gone : m_gone) {
        if (gone > place) {
            break;
        }
        ++place;
    }
    return place;
}

Bookmark RowSet::bookmark(qint64 place) const noexcept {
    return Bookmark((m_tag << kPlaceBits) | place);
}

qint64 RowSet::place(Bookmark bookmark) const noexcept {
    const bool mine = !bookmark.isNull() && (bookmark.place() >> kPlaceBits) == m_tag;
    const qint64 place = bookmark.place() & kPlaceMask;
    return mine && place < size() ? place : -1;
}

} // namespace yrw::dao
