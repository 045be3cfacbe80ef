#pragma once

#include "platform/toolbar/ToolbarParts.h"

#include <QMenu>

namespace yrw {

/// What the user chose in a menu of tools.
struct MenuChoice {
    QString toolKey; ///< empty: the menu was closed
    int entry = 0;   ///< of a combo tool, from 1; 0 for other tools
};

/// Fills a menu with the visible ones of the tools. An action's object name is its tool's key.
void fillMenu(QMenu& menu, const std::vector<BandTool*>& tools);

/// Opens a filled menu and returns the choice when it has closed.
[[nodiscard]] MenuChoice execMenu(QMenu& menu, const QPoint& globalPosition);

} // namespace yrw
