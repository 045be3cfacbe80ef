#pragma once

#include "platform/toolbar/BandTool.h"

#include <QPoint>

#include <vector>

namespace yrw {

/// What the user chose in a menu of tools.
struct MenuChoice {
    QString toolKey; ///< empty: the menu was closed
    int entry = 0;   ///< of a combo tool, from 1; 0 for other tools
};

/// What a menu is called.
struct MenuNames {
    QString object;
    QString accessible;
    QString description;
};

/// Opens a menu of the visible ones of the tools and returns the choice when it has closed; nothing
/// to show opens none. An action's object name is its tool's key.
[[nodiscard]] MenuChoice chooseTool(const std::vector<const BandTool*>& tools,
                                    const MenuNames& names, const QPoint& globalPosition);

} // namespace yrw
