#pragma once

#include "platform/toolbar/ToolbarParts.h"

#include <QComboBox>
#include <QToolButton>
#include <QWidget>

#include <optional>

namespace yrw {

/// What the controls of a band tell the toolbar.
///
/// Thread: the user-interface thread.
class BandEvents {
public:
    virtual ~BandEvents();
    virtual void toolClicked(ToolBand& band, const QString& toolKey) = 0;
    /// The user picked an entry (from 1) of a combo tool.
    virtual void entryPicked(ToolBand& band, const QString& toolKey, int entry) = 0;
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

class BandGrip;

/// A band on the screen: a grip while it is docked, the controls of its tools, and a button that
/// offers those that do not fit in a menu.
///
/// Lifetime: its tools outlive it; the toolbar makes it anew when tools come or go.
class BandBar final : public QWidget {
    Q_OBJECT

public:
    BandBar(ToolBand& band, BandEvents& events, QWidget* parent);

    [[nodiscard]] ToolBand& band() const noexcept { return m_band; }
    /// Makes the controls show the state of a tool, or of all.
    void sync(const BandTool* tool);
    [[nodiscard]] int preferredWidth() const;
    [[nodiscard]] int leastWidth() const;
    [[nodiscard]] QSize sizeHint() const override;
    /// Size without the grip.
    [[nodiscard]] QSize floatingSize() const;
    /// A floating bar has no grip.
    void setFloating(bool floating);
    /// The place on the screen below a tool, where its menu opens.
    [[nodiscard]] std::optional<QPoint> placeBelow(const QString& toolKey) const;
    /// Controls that can take the focus now, from left to right.
    [[nodiscard]] QList<QWidget*> focusable() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Item {
        BandTool* tool;
        QWidget* control;
        bool separated; ///< a line stands before it
    };

    QWidget* makeButton(BandTool& tool);
    QWidget* makeCombo(BandTool& tool);
    void syncItem(const Item& item);
    void arrange();
    void openOverflow();
    [[nodiscard]] int toolsWidth() const;
    [[nodiscard]] int gripWidth() const;
    [[nodiscard]] static int widthOf(const Item& item, bool first);

    ToolBand& m_band;
    BandEvents& m_events;
    std::vector<Item> m_items;
    std::vector<int> m_lines; ///< x of the separator lines shown
    QToolButton* m_overflow;
    BandGrip* m_grip;
    bool m_floating = false;
};

} // namespace yrw
