#pragma once

#include "platform/dao/Salvage.h"

#include <memory>

namespace yrw::dao {

class SqliteFile;

/// See `Workspace::openDamaged`.
[[nodiscard]] std::unique_ptr<DamagedFile> openDamagedFile(const QString& path);

/// Copies what can be read of a table's columns in a damaged file; see `Database::salvage`.
[[nodiscard]] SalvagedTable salvageRows(const QString& damaged, const QString& table,
                                        const QStringList& columns, const SqliteFile& target);

} // namespace yrw::dao
