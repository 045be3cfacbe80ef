#pragma once

#include <QIcon>

namespace yrw {

/// Icon of a free desktop name for tools and menus, in the text colour of the palette in use, so
/// that it can be seen on light and dark. Null when the icon themes do not have it.
[[nodiscard]] QIcon toolIcon(const QString& name);

} // namespace yrw
