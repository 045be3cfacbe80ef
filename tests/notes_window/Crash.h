#pragma once

namespace yrw::test {

/// True in a process that was started to come to a sudden end.
[[nodiscard]] bool isCrashingChild();
/// Opens the notes window and types until it is killed.
[[noreturn]] void crash();

} // namespace yrw::test
