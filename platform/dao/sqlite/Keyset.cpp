#include "platform/dao/sqlite/KeysetRecordset.h"

#include <algorithm>
#include <utility>

namespace yrw::dao {

Keyset::Keyset(std::vector<qint64> keys) : m_keys(std::move(keys)) {}

bool Keyset::isGone(qint64 place) const noexcept {
    return std::binary_search(m_gone.begin(), m_gone.end(), place);
}

void Keyset::markGone(qint64 place) {
    const auto at = std::lower_bound(m_gone.begin(), m_gone.end(), place);
    if (at == m_gone.end() || *at != place) {
        m_gone.insert(at, place);
    }
}

qint64 Keyset::append(qint64 key) {
    m_keys.push_back(key);
    return size() - 1;
}

qint64 Keyset::positionOf(qint64 place) const noexcept {
    return place - (std::lower_bound(m_gone.begin(), m_gone.end(), place) - m_gone.begin());
}

qint64 Keyset::placeAt(qint64 position) const noexcept {
    qint64 place = position;
    for (const qint64 gone : m_gone) {
        if (gone > place) {
            break;
        }
        ++place;
    }
    return place;
}

Bookmark Keyset::bookmark(qint64 place) const noexcept {
    return m_space.bookmark(place);
}

qint64 Keyset::place(Bookmark bookmark) const noexcept {
    const qint64 place = m_space.place(bookmark);
    return place < size() ? place : -1;
}

} // namespace yrw::dao
