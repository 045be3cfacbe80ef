#pragma once

namespace yrw {

class WindowContext;

/// Has the host show its help about the notes window; without one, a list of the keys.
void showHelp(WindowContext& context);

} // namespace yrw
