#pragma once

#include "platform/toolbar/BandArrangement.h"

#include <QObject>
#include <QWidget>

#include <optional>

namespace yrw {

/// Where a band would go if it were dropped now.
struct DropTarget {
    BandDocking docking;
    QRect outline; ///< on the screen
};

/// A drag of a band: an outline shows where the band would go; Escape cancels, and so does a box
/// that comes up meanwhile.
///
/// Lifetime: from the first movement until the mouse button is released; a cancelled drag stays
/// until then, so that the rest of the movement does nothing.
/// Thread: the user-interface thread.
class BandDrag final : public QObject {
    Q_OBJECT

public:
    BandDrag();

    /// Shows the outline at a target; nothing in a cancelled drag.
    void moveTo(const DropTarget& target);
    /// Where to drop the band; nothing in a cancelled drag.
    [[nodiscard]] const std::optional<DropTarget>& target() const noexcept { return m_target; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cancel();

    QWidget m_outline;
    std::optional<DropTarget> m_target;
    bool m_cancelled = false;
};

} // namespace yrw
