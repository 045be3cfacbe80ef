#pragma once

#include "platform/toolbar/BandEvents.h"

#include <QWidget>

#include <optional>

namespace yrw {

/// The handle by which the user drags a band: the grip of a docked band, the title of a floating
/// one, which a double-click docks.
///
/// Lifetime: belongs to the control whose handle it is; its band outlives it.
class BandGrip final : public QWidget {
    Q_OBJECT

public:
    BandGrip(ToolBand& band, BandEvents& events, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void paintTitle();

    ToolBand& m_band;
    BandEvents& m_events;
    std::optional<QPoint> m_pressed; ///< where the button went down
    bool m_dragging = false;
};

} // namespace yrw
