#pragma once

#include "platform/dao/Salvage.h"
#include "store/NotesDatabase.h"
#include "store/Schema.h"

namespace yrw {

/// What was had of a damaged notes database.
struct SalvageResult {
    QString path;                           ///< the new file
    std::vector<dao::SalvagedTable> tables; ///< what was copied
    QStringList missing;                    ///< tables of which nothing could be read
};

/// Copies what can be read of a damaged notes database, row by row, into a new one of this version
/// beside it ("Notes.mdb.salvaged"), with its indexes made anew. The damaged file stays as it is.
/// Stored queries are those that this version ships, with those of the file that it does not know.
/// Raises `kErrorNotADatabase` when nothing can be read, and what writing raises; the new file then
/// is not there.
[[nodiscard]] SalvageResult salvageNotes(dao::Workspace& workspace, const QString& path);

/// True when the file is a damaged notes database rather than none.
[[nodiscard]] bool isDamagedNotesDatabase(dao::Workspace& workspace, const QString& path);

} // namespace yrw
