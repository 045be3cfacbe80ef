#pragma once

#include "platform/toolbar/Toolbar.h"

namespace yrw {

/// Does something with every tool of an id, in whichever bands and menus it is.
template <class Action>
void forEachTool(const Toolbar& toolbar, int id, Action action) {
    for (int i = 0; i < toolbar.bandCount(); ++i) {
        const IBand* const band = toolbar.bandAt(i);
        for (int j = 0; j < band->toolCount(); ++j) {
            if (ITool* const tool = band->toolAt(j); tool->id() == id) {
                action(*tool);
            }
        }
    }
}

} // namespace yrw
