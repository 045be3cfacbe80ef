#include "platform/dao/sqlite/BookmarkSpace.h"

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

BookmarkSpace::BookmarkSpace() : m_tag(nextTag()) {}

Bookmark BookmarkSpace::bookmark(qint64 place) const noexcept {
    return Bookmark((m_tag << kPlaceBits) | place);
}

qint64 BookmarkSpace::place(Bookmark bookmark) const noexcept {
    const bool mine = !bookmark.isNull() && (bookmark.place() >> kPlaceBits) == m_tag;
    return mine ? bookmark.place() & kPlaceMask : -1;
}

} // namespace yrw::dao
