#pragma once

#include "store/StoreContext.h"

namespace yrw {

/// What the window calls an owner record: its kind and its own text, as "Customer: Quill & Son".
/// What the host does not tell of them is left out.
[[nodiscard]] QString ownerText(IRecord& owner, StoreContext& store);

} // namespace yrw
