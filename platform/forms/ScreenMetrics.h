#pragma once

namespace yrw {

/// Sizes of the parts of windows, by the indexes that their users know.
enum class SystemMetric : int {
    CaptionHeight = 4,
    VerticalScrollArrow = 20, ///< height of its arrows, as wide as the scroll bar
    SizingFrameWidth = 32,
};

/// A size in device-independent pixels, as the style of the application has it.
[[nodiscard]] int systemMetric(SystemMetric which);

} // namespace yrw
