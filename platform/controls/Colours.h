#pragma once

#include "platform/forms/Contrast.h"

#include <QColor>

namespace yrw {

/// Colour of a number &H00BBGGRR, and back.
[[nodiscard]] constexpr QRgb rgbOfBgr(int colour) noexcept {
    return qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}
[[nodiscard]] inline QColor colourOfBgr(int colour) {
    return QColor::fromRgb(rgbOfBgr(colour));
}
[[nodiscard]] inline int bgrOfColour(const QColor& colour) {
    return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

/// A text colour that can be read on a background: the wanted one when it can, else the same hue
/// made lighter or darker, at last white or black.
[[nodiscard]] QColor readableOn(const QColor& background, const QColor& wanted);

/// Colour of plain text on a background: the wanted one when it can be read well, else black or
/// white.
[[nodiscard]] QColor textOn(const QColor& background, const QColor& wanted);

} // namespace yrw
