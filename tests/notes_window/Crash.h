#pragma once

namespace yrw::test {

/// True in a process that was started to come to a sudden end.
[[nodiscard]] bool isCrashingChild();
/// Opens the notes window and types until it is killed, or gives a note or its reminders other
/// values and kills itself between the two; never returns.
int crash();

} // namespace yrw::test
