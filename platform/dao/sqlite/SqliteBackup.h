#pragma once

#include "platform/dao/OnlineBackup.h"

#include <QString>

#include <memory>

namespace yrw {
class Clock;
}

namespace yrw::dao {

/// Begins to copy a file of the embedded engine; see `Database::beginBackup`.
[[nodiscard]] std::unique_ptr<OnlineBackup> backUpFile(const QString& file, const QString& path,
                                                       ExistingCopy existing, Clock& clock);

} // namespace yrw::dao
