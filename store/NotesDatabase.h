#pragma once

#include "framework/HostDataHelper.h"

#include <QList>

namespace yrw {

class FileSystem;

/// Name of the notes database beside the host's own.
inline const QString kNotesDatabaseName = QStringLiteral("Notes.mdb");

/// A user of the host as the notes database remembers one.
struct UserName {
    qint64 UserID = 0;
    QString UserCode;
    QString UseName;
};

/// Makes a notes database from the template, where there is none: moves left-over side files of an
/// earlier one aside, copies `templateFolder`/Notes.mdb, and the support folder, overwriting. Where
/// there is one, also one that comes meanwhile, that stays with all that belongs to it, and the
/// answer is false. Asks nothing. Raises naming the file that could not be copied.
bool createNotesDatabase(const FileSystem& files, const QString& templateFolder,
                         const QString& targetFolder);

/// Gives a complete notes database, closed and on the disk under another name in that folder, its
/// place, as `createNotesDatabase` does; false when something of that name is there. Raises
/// `kErrorFileCopy` naming the place when it cannot be had.
[[nodiscard]] bool placeNotesDatabase(const FileSystem& files, const QString& complete,
                                      const QString& place);

/// Opens a notes database and binds the helper to it: checks that it is one, refuses a newer
/// schema (`kErrorNewerSchema`), upgrades an older one after a copy beside it. Asks nothing.
Ref<dao::Database> openNotesDatabase(HostDataHelper& helper, const Ref<dao::Workspace>& workspace,
                                     const QString& path);

/// Refreshes the table of user names; skipped on a read-only database. Waits for nobody: raises
/// `kErrorLocked` when somebody is writing.
void refreshUserNames(dao::Database& database, const QList<UserName>& users);

/// The users whose names the table has: those of the host when it was last open, and who has left.
[[nodiscard]] QList<UserName> rememberedUsers(dao::Database& database);

/// The users of a host as `refreshUserNames` takes them.
[[nodiscard]] QList<UserName> userNamesOf(const Ref<ICollection>& users);

/// The program ids of the hosts that notes are kept for.
[[nodiscard]] QStringList hostsOfNotes(dao::Database& database);

} // namespace yrw
