#pragma once

#include <QIcon>

namespace yrw {

/// Icon of a free desktop name for tools and menus, in the text colour of the palette in use, so
/// that it can be seen on light and dark. The program's own drawing stands in for one that the icon
/// themes lack; null when there is none either.
[[nodiscard]] QIcon toolIcon(const QString& name);

} // namespace yrw
