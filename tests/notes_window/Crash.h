#pragma once

namespace yrw::test {

/// True in a process that was started to be killed while it types.
[[nodiscard]] bool isCrashingChild();
/// Opens the notes window and types until it is killed; never returns.
int crash();

} // namespace yrw::test
