#pragma once

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

/// Contrast of two colours, 1 (none) to 21 (black on white), as accessibility guidelines count it.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);

/// A text colour that can be read on a background: the wanted one when it can, else the same hue
/// made lighter or darker, at last white or black.
[[nodiscard]] QColor readableOn(const QColor& background, const QColor& wanted);

/// Colour of plain text on a background: the wanted one when it can be read well, else black or
/// white.
[[nodiscard]] QColor textOn(const QColor& background, const QColor& wanted);

} // namespace yrw
