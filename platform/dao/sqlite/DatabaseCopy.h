#pragma once

#include <QString>

struct sqlite3;

namespace yrw::dao {

/// Copies what is committed in an open database into a new file, page by page: no statement runs,
/// and a damaged file can be copied too.
///
/// The copy takes mode and group of `original`; rights of a group that it cannot be given to are
/// left out. It is made under a name that nobody can guess, and appears under its own when it is
/// complete and on the disk. Nothing that is there is replaced or followed, links included.
/// Raises `kErrorCannotOpenDatabase` when the name is taken or the folder cannot be written,
/// `kErrorDiskFull`, and what reading raises.
void copyDatabase(sqlite3* source, const QString& original, const QString& target);

/// Gives a file another name in its folder; false when that name is taken, also by a link that
/// leads nowhere.
[[nodiscard]] bool renameWithoutReplacing(const QString& from, const QString& to);

} // namespace yrw::dao
