#pragma once

#include "platform/dao/Connection.h"
#include "platform/dao/Salvage.h"

namespace yrw::dao {

/// Makes connections of one kind of engine; see `Workspace`.
///
/// Lifetime: its workspace's. Thread: the user-interface thread.
class Engine {
public:
    virtual ~Engine() = default;
    [[nodiscard]] virtual std::shared_ptr<Connection> open(const QString& path,
                                                           bool readOnly) const = 0;
    [[nodiscard]] virtual std::shared_ptr<Connection> create(const QString& path) const = 0;
    /// See `Workspace::openDamaged`.
    [[nodiscard]] virtual std::unique_ptr<DamagedFile> openDamaged(const QString& path) const = 0;
};

} // namespace yrw::dao
