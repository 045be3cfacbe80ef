#pragma once

#include "platform/rtf/Model.h"

namespace yrw::rtf {

/// The number of a list item as it shows: 3, c, C, iii or III; empty for a bullet.
[[nodiscard]] QString listNumber(ListKind kind, int number);

} // namespace yrw::rtf
