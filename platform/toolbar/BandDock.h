#pragma once

#include "platform/toolbar/BandBar.h"
#include "platform/toolbar/BandDrag.h"
#include "platform/toolbar/BandList.h"
#include "platform/toolbar/KeyboardReturn.h"

#include <QPoint>

#include <optional>

namespace yrw {

class FloatingBand;

/// The bands of a toolbar on the screen: docked in rows, floating in windows, on the way between
/// them, and walked along by keys.
///
/// Lifetime: no longer than toolbar and bands. Thread: the user-interface thread.
class BandDock final : public BandEvents {
public:
    /// Rows lie in the area; the toolbar is whose events are raised.
    BandDock(QWidget& area, IToolbar& toolbar, BandList& bands);
    ~BandDock() override;

    /// Makes the controls anew.
    void rebuild();
    /// Ends the controls and windows, before the bands that they show.
    void end();
    /// Makes the controls of a band show the state of a tool, or of all.
    void sync(const ToolBand& band, const BandTool* tool) const;
    /// Brings the bars to where their bands are docked or float.
    void settle();
    /// Places the docked bands in their rows.
    void arrange();
    /// Shows the floating bands while the toolbar is shown, else hides them.
    void showFloats();
    [[nodiscard]] int height() const;
    [[nodiscard]] int preferredWidth() const;
    void focusFirst();
    /// See `Toolbar::leave`.
    bool leave();
    /// Below the tool whose click is being handled, on the screen; nothing for a tool that is not
    /// shown in a band.
    [[nodiscard]] std::optional<QPoint> clickedPlace() const { return m_clickedPlace; }

    void toolUsed(ToolBand& band, const QString& toolKey, int entry) override;
    void comboDropped(ToolBand& band, const QString& toolKey) override;
    void comboDone() override { m_return.giveBack(); }
    void dragStarted() override;
    void bandDragged(ToolBand& band, const QPoint& pointer, const QPoint& taken) override;
    void bandDropped(ToolBand& band) override;
    void bandClosed(ToolBand& band) override;
    void menuWanted(const QPoint& globalPosition) override;
    void focusMoved(QWidget& from, int step) override;

private:
    using Row = std::vector<BandBar*>;

    void drop();
    [[nodiscard]] BandBar* barOf(const ToolBand& band) const;
    /// The docked bars of each row that has any.
    [[nodiscard]] std::vector<Row> rows() const;
    [[nodiscard]] FloatingBand& windowOf(BandBar& bar);
    /// Ends the windows of bands that no longer float.
    void endFloats();
    [[nodiscard]] DropTarget dockTarget(const BandBar& bar, const QPoint& place) const;
    void moveBand(ToolBand& band, const BandDocking& to);
    void reset();
    void arrangeRow(const Row& row, int y, int height) const;
    [[nodiscard]] int rowHeight() const;
    void setTabStop(QWidget* control);
    /// Gives a control the focus, and its window the keyboard.
    static void focus(QWidget& control, Qt::FocusReason reason);
    [[nodiscard]] QList<QWidget*> focusable() const;

    QWidget& m_area;
    IToolbar& m_toolbar;
    BandList& m_bands;
    std::vector<BandBar*> m_bars; ///< by row and place; each is docked or in a floating window
    std::vector<FloatingBand*> m_floats;
    std::unique_ptr<BandDrag> m_drag; ///< the drag under way
    KeyboardReturn m_return;
    std::optional<QPoint> m_clickedPlace;
};

} // namespace yrw
