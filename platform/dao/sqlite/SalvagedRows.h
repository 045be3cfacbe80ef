#pragma once

#include "platform/dao/Salvage.h"

namespace yrw::dao {

class SqliteFile;

/// Copies what can be read of a table's columns in a damaged file; see `DamagedFile::copyTable`.
[[nodiscard]] SalvagedTable salvageRows(const QString& damaged, const QString& table,
                                        const QStringList& columns, const SqliteFile& target);

} // namespace yrw::dao
