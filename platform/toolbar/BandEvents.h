#pragma once

#include "platform/toolbar/ToolBand.h"

#include <QPoint>

class QWidget;

namespace yrw {

/// What the controls of a band tell the toolbar.
///
/// Thread: the user-interface thread.
class BandEvents {
public:
    virtual ~BandEvents() = default;
    /// A tool was clicked, or an entry (from 1) of a combo tool picked; 0 for other tools.
    virtual void toolUsed(ToolBand& band, const QString& toolKey, int entry) = 0;
    virtual void comboDropped(ToolBand& band, const QString& toolKey) = 0;
    /// An entry of a dropped list was picked and what it does is done: the user is done here.
    virtual void comboDone() = 0;
    virtual void dragStarted() = 0;
    /// The band is being dragged by its handle: the mouse pointer on the screen, and the point of
    /// the band's control at which it was taken.
    virtual void bandDragged(ToolBand& band, const QPoint& pointer, const QPoint& taken) = 0;
    virtual void bandDropped(ToolBand& band) = 0;
    /// A floating band is to be docked where it was.
    virtual void bandClosed(ToolBand& band) = 0;
    /// The toolbar's own menu is wanted at a place on the screen.
    virtual void menuWanted(const QPoint& globalPosition) = 0;
    /// An arrow key wants the next (+1) or previous (-1) tool, or the first (-2) or last (+2) one.
    virtual void focusMoved(QWidget& from, int step) = 0;
};

} // namespace yrw
