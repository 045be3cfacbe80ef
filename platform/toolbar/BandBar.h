#pragma once

#include "platform/toolbar/BandEvents.h"

#include <QWidget>

#include <optional>

class QToolButton;

namespace yrw {

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
    /// A visible tool and its control.
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
