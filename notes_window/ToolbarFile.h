#pragma once

namespace yrw {

class Toolbar;
class WindowContext;

/// Loads the layout of the window's toolbar: from the host's folder, else from the one that is
/// shipped, else the one that is built in. A file that cannot be used is told of.
void loadToolbar(Toolbar& toolbar, WindowContext& context);

} // namespace yrw
