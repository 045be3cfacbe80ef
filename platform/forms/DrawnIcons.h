#pragma once

#include <QColor>
#include <QIcon>

namespace yrw {

/// Icon that this program draws itself, by its free desktop name; null for a name that it has no
/// drawing for. Icons of tools are in the text colour of the palette in use at each painting, those
/// of message boxes ("dialog-error") and windows ("yarrowen-notes") in their own colours. They are
/// drawn anew for each size and screen, so that none is scaled.
/// Thread: the user-interface thread.
[[nodiscard]] QIcon drawnIcon(const QString& name);

/// Colour of a one-coloured icon in the palette in use.
[[nodiscard]] QColor iconInk(QIcon::Mode mode);

/// Names of all drawings.
[[nodiscard]] QStringList drawnIconNames();

} // namespace yrw
