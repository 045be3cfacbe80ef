#pragma once

namespace yrw::test {

/// True in a process that was started to type until it is killed.
[[nodiscard]] bool isTypingChild();
/// Opens the notes window and types; never returns.
int typeUntilKilled();

} // namespace yrw::test
