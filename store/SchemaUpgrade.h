#pragma once

#include "platform/dao/Database.h"

namespace yrw {

/// Brings an older notes database to this version's schema, in one transaction, after a copy of it
/// was put beside it ("Notes.mdb.schema0"). Rows are kept as they are.
/// Raises `kErrorReadOnly` for a read-only database, and what copying and writing raise; the
/// database is then as it was.
void upgradeSchema(dao::Database& database);

} // namespace yrw
