#pragma once

#include "platform/toolbar/BandBar.h"
#include "platform/toolbar/Toolbar.h"
#include "platform/toolbar/ToolbarLayout.h"

#include <QPoint>

#include <optional>

namespace yrw {

/// The bands of a toolbar and the controls that show the docked ones.
class Toolbar::Private final : public BandEvents {
public:
    explicit Private(Toolbar& toolbar) : m_toolbar(toolbar) {}

    [[nodiscard]] const std::vector<std::unique_ptr<ToolBand>>& bands() const { return m_bands; }
    [[nodiscard]] ToolBand* find(const QString& key) const;
    ToolBand& add(const QString& key, bool popup);
    void remove(const QString& key);
    void load(const QList<BandLayout>& layout);
    void popup(const QString& key, const QPoint& globalPosition);

    /// Makes the controls anew.
    void rebuild();
    /// Places the bands in their rows.
    void arrange();
    [[nodiscard]] int height() const;
    [[nodiscard]] int preferredWidth() const;
    void focusFirst();
    /// Below the tool whose click is being handled, on the screen; nothing for a tool that is not
    /// shown in a band.
    [[nodiscard]] std::optional<QPoint> clickedPlace() const { return m_clickedPlace; }

    void toolClicked(ToolBand& band, const QString& toolKey) override;
    void entryPicked(ToolBand& band, const QString& toolKey, int entry) override;
    void comboDropped(ToolBand& band, const QString& toolKey) override;
    void bandDragged(ToolBand& band, const QPoint& place) override;
    void bandDropped(ToolBand& band) override;
    void focusMoved(QWidget& from, int step) override;

private:
    using Rows = std::vector<std::vector<BandBar*>>;

    /// Ends the controls, before the bands they show.
    void drop();
    void changed(ToolBand& band, BandTool* tool, ToolChange change);
    [[nodiscard]] BandBar* barOf(const ToolBand& band) const;
    [[nodiscard]] Rows rows() const;
    void numberRows();
    void arrangeRow(const std::vector<BandBar*>& row, int y, int height) const;
    [[nodiscard]] int rowHeight() const;
    void setTabStop(QWidget* control);
    [[nodiscard]] QList<QWidget*> focusable() const;
    [[nodiscard]] bool contains(const ToolBand* band) const;

    Toolbar& m_toolbar;
    std::vector<std::unique_ptr<ToolBand>> m_bands;
    std::vector<BandBar*> m_bars; ///< in the order shown: from left to right within a row
    bool m_loading = false;
    std::optional<QPoint> m_clickedPlace;
    bool m_moved = false; ///< the drag under way has moved the band
};

} // namespace yrw
