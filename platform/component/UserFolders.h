#pragma once

#include <QString>

namespace yrw {

/// The folders below which a user's files lie, as the desktop's base-directory standard names them.
/// A variable that is empty or holds a relative path counts as not set. No path ends in a slash;
/// none need be there yet.
namespace userfolders {

/// `$XDG_DATA_HOME`, else `~/.local/share`.
[[nodiscard]] QString data();
/// `$XDG_CONFIG_HOME`, else `~/.config`.
[[nodiscard]] QString config();
/// `$XDG_STATE_HOME`, else `~/.local/state`.
[[nodiscard]] QString state();

} // namespace userfolders

} // namespace yrw
