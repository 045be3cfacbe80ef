#pragma once

#include <QString>

#include <sys/types.h>

namespace yrw {

/// Files that grow under a name of their own beside the place that they are meant for, and get
/// their own name when they are complete and on the disk. A program that is killed leaves such a
/// file; whoever makes the next one for that place removes it, once nobody has written to it for
/// an hour.

/// A name for what is to become `path` ("Notes.mdb.unfinished-1a2b3c"); nobody can guess it.
[[nodiscard]] QString unfinishedName(const QString& path);
/// Makes a file of such a name, which is put into `name`, and removes what was left of earlier
/// ones. A descriptor that reads and writes; -1, with the system's reason, when it cannot be made.
[[nodiscard]] int makeUnfinished(const QString& path, QString& name, mode_t mode);
/// Removes what killed programs left of `path`; `own` is a file of now, which stays.
void removeUnfinished(const QString& path, const QString& own);

/// Gives a file another name in its folder; false, with the system's reason, when it cannot be
/// had: `EEXIST` when that name is taken, also by a link that leads nowhere.
[[nodiscard]] bool renameWithoutReplacing(const QString& from, const QString& to);
/// Has the names of a file's folder on the disk, as far as that can be.
void syncFolderOf(const QString& path);

} // namespace yrw
