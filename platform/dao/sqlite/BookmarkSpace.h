#pragma once

#include "platform/dao/Types.h"

namespace yrw::dao {

/// Makes the bookmarks of one set of rows and tells them from those of every other set.
class BookmarkSpace {
public:
    BookmarkSpace();
    /// Bookmark of a 0-based place below 2^40.
    [[nodiscard]] Bookmark bookmark(qint64 place) const noexcept;
    /// Place of a bookmark; -1 for a null one and for one of another set.
    [[nodiscard]] qint64 place(Bookmark bookmark) const noexcept;

private:
    qint64 m_tag;
};

} // namespace yrw::dao
