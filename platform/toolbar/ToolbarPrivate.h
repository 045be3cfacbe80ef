#pragma once

#include "platform/toolbar/BandBar.h"
#include "platform/toolbar/BandDrag.h"
#include "platform/toolbar/KeyboardReturn.h"
#include "platform/toolbar/Toolbar.h"
#include "platform/toolbar/ToolbarLayout.h"

#include <QPoint>

#include <optional>

namespace yrw {

class FloatingBand;

/// The bands of a toolbar and the controls that show the docked and the floating ones.
class Toolbar::Private final : public BandEvents {
public:
    explicit Private(Toolbar& toolbar)
        : m_toolbar(toolbar), m_return(new KeyboardReturn(toolbar)) {}
    ~Private() override;

    [[nodiscard]] const std::vector<std::unique_ptr<ToolBand>>& bands() const { return m_bands; }
    [[nodiscard]] ToolBand* find(const QString& key) const;
    ToolBand& add(const QString& key, bool popup);
    void remove(const QString& key);
    void load(const QList<BandLayout>& layout);
    void popup(const QString& key, const QPoint& globalPosition);

    /// Makes the controls anew.
    void rebuild();
    /// Places the docked bands in their rows.
    void arrange();
    /// Shows the floating bands while the toolbar is shown, else hides them.
    void showFloats();
    [[nodiscard]] QString arrangement() const;
    void setArrangement(const QString& text);
    /// Puts every band where the layout says.
    void reset();
    [[nodiscard]] int height() const;
    [[nodiscard]] int preferredWidth() const;
    void focusFirst();
    /// See `Toolbar::leave`.
    bool leave();
    /// Below the tool whose click is being handled, on the screen; nothing for a tool that is not
    /// shown in a band.
    [[nodiscard]] std::optional<QPoint> clickedPlace() const { return m_clickedPlace; }

    void toolClicked(ToolBand& band, const QString& toolKey) override;
    void entryPicked(ToolBand& band, const QString& toolKey, int entry) override;
    void comboDropped(ToolBand& band, const QString& toolKey) override;
    void comboDone() override { m_return->giveBack(); }
    void dragStarted() override;
    void bandDragged(ToolBand& band, const QPoint& pointer, const QPoint& taken) override;
    void bandDropped(ToolBand& band) override;
    void bandClosed(ToolBand& band) override;
    void menuWanted(const QPoint& globalPosition) override;
    void focusMoved(QWidget& from, int step) override;

private:
    using Rows = std::vector<std::vector<BandBar*>>;

    /// Ends the controls, before the bands they show.
    void drop();
    void changed(ToolBand& band, BandTool* tool, ToolChange change);
    [[nodiscard]] BandBar* barOf(const ToolBand& band) const;
    /// The docked bars of each row that has any.
    [[nodiscard]] Rows rows() const;
    [[nodiscard]] QList<BandPlace> places() const;
    [[nodiscard]] QList<BandPlace> homes() const;
    void numberBands();
    /// Brings the bars to where their bands are docked or float.
    void settle();
    [[nodiscard]] FloatingBand& windowOf(BandBar& bar);
    /// Ends the windows of bands that no longer float.
    void endFloats();
    [[nodiscard]] DropTarget dockTarget(const BandBar& bar, const QPoint& place) const;
    [[nodiscard]] DropTarget floatTarget(const BandBar& bar, const QPoint& topLeft) const;
    void moveBand(ToolBand& band, const BandDocking& to);
    void arrangeRow(const std::vector<BandBar*>& row, int y, int height) const;
    [[nodiscard]] int rowHeight() const;
    void setTabStop(QWidget* control);
    /// Gives a control the focus, and its window the keyboard.
    static void focus(QWidget& control, Qt::FocusReason reason);
    [[nodiscard]] QList<QWidget*> focusable() const;
    [[nodiscard]] bool contains(const ToolBand* band) const;

    Toolbar& m_toolbar;
    std::vector<std::unique_ptr<ToolBand>> m_bands;
    std::vector<BandBar*> m_bars; ///< by row and place; each is docked or in a floating window
    std::vector<FloatingBand*> m_floats;
    std::unique_ptr<BandDrag> m_drag; ///< the drag under way
    KeyboardReturn* m_return;         ///< belongs to the toolbar
    bool m_loading = false;
    std::optional<QPoint> m_clickedPlace;
};

} // namespace yrw
