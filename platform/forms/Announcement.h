#pragma once

class QString;
class QWidget;

namespace yrw {

/// Has a screen reader say some words, wherever the keyboard is. Nothing is seen on the screen.
///
/// What readers speak by themselves is a notification that comes to show; alerts, descriptions and
/// windows that do not take the keyboard they pass over.
/// `window` is on the screen. An announcement lives as long as its window, or until the next one
/// there.
/// Thread: the user-interface thread.
void announce(QWidget& window, const QString& words);

} // namespace yrw
