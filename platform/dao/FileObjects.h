#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/TextIndex.h"

#include <vector>

namespace yrw::dao {

/// The objects of an open database, without those that the engine keeps for itself.
[[nodiscard]] std::vector<FileObject> fileObjects(Database& database);

/// What `Database::CheckIntegrity` found, told apart by what helps.
struct Damage {
    QStringList indexes; ///< indexes that do not fit their rows: `rebuildIndexes` helps
    QStringList pages;   ///< the file itself
};
[[nodiscard]] Damage damageOf(const QStringList& problems);

/// Makes every index of an open database anew from its rows.
void rebuildIndexes(Database& database);

/// What is wrong with an index of texts whose tables and triggers are there: it contradicts itself,
/// or lacks rows, or has too many; nothing when all is well. Rows that wait are fine. In a
/// read-only database only the rows are counted.
[[nodiscard]] QString textIndexProblem(Database& database, const TextIndexNames& names);

} // namespace yrw::dao
