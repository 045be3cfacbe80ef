#pragma once

#include <cmath>

namespace yrw {

/// Twips per device-independent pixel: 1440 to the inch at 96 pixels to the inch.
inline constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int pixelsToTwips(int pixels) noexcept {
    return pixels * kTwipsPerPixel;
}
[[nodiscard]] inline int twipsToPixels(int twips) noexcept {
    return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

} // namespace yrw
