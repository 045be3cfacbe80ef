#pragma once

class QWidget;

namespace yrw {

/// Makes the frames of unticked boxes visible on their background, in a menu or in every control of
/// a window. Some styles paint them nearly in the background's own colour.
void showBoxes(QWidget& widget);

/// Does so whenever the window is shown or its colours change, and has the placeholders of its
/// fields painted so that they can be read.
/// Lifetime: that of the window. Thread: the user-interface thread.
void keepReadable(QWidget& window);

} // namespace yrw
