#pragma once

namespace yrw::dao {

/// Name of the engine's file layer for connections that may only read: it makes, changes and
/// deletes no file, so that a reader leaves nothing behind that would be in a writer's way.
[[nodiscard]] const char* readerFileLayer();

} // namespace yrw::dao
