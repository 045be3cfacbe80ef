#pragma once

#include "platform/dao/Database.h"

namespace yrw {

/// True for the number of a schema that `upgradeSchema` can bring up to date.
[[nodiscard]] bool isOlderSchema(int version);

/// Brings an older notes database to this version's schema, in one transaction, after a copy of it
/// was put beside it ("Notes.mdb.schema0"). Rows are kept as they are. Of several programs that do
/// this at once one does it; the others wait for it and find nothing left to do.
/// Raises `kErrorReadOnly` for a read-only database, and what copying and writing raise; the
/// database is then as it was.
void upgradeSchema(dao::Database& database);

} // namespace yrw
