#pragma once

class QWidget;

namespace yrw {

/// Sees to it that a window has the keyboard, in the control that had it, after a box or dialog of
/// its own has closed. Nothing happens when the user has gone to another program meanwhile.
///
/// Most window managers do that by themselves, and asked too early they would give it twice and
/// lose it; so it is looked after a moment later.
/// Thread: the user-interface thread.
void giveKeyboardBack(QWidget* window);

} // namespace yrw
