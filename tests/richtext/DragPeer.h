#pragma once

namespace yrw::test {

/// True when this process plays another program of the desktop in a test.
[[nodiscard]] bool isDragPeer();
/// A window right of the editor's: it prints in hex what the file that is dropped on it holds, and
/// gives away the file that it was started with. Prints "ready" once it is on the screen.
int runDragPeer();

} // namespace yrw::test
