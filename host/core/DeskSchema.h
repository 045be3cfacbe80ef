#pragma once

#include <QString>

namespace yrw {

/// Number of the schema that `Desk.mdb` carries.
inline constexpr int kDeskSchemaVersion = 1;

/// Script that makes the tables and queries of an empty `Desk.mdb`.
[[nodiscard]] QString deskSchemaScript();
/// Script that makes its indexes; run after the rows are in, which is faster by far.
[[nodiscard]] QString deskIndexScript();

} // namespace yrw
