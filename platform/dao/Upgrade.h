#pragma once

#include "platform/dao/Database.h"

#include <span>

namespace yrw::dao {

/// What brings a database from the version before to `toVersion`: statements of the engine's own
/// language, as `Database::RunScript` takes them.
struct UpgradeStep {
    int toVersion = 0;
    QString script;
};

/// Brings a database to the version of the last step, or finds it there already.
///
/// An older database is first copied beside itself ("NAME.v1", numbered when that is there) and
/// then upgraded in one transaction, so that it is whole in either version; two programs that do
/// it at once do it once. Steps are in ascending order.
/// Returns the path of the copy, empty when nothing was to be done. Raises `kErrorNewerSchema` for
/// a database of a newer version, `kErrorReadOnly` for an older one that cannot be written.
QString bringUpToDate(Database& database, std::span<const UpgradeStep> steps);

} // namespace yrw::dao
