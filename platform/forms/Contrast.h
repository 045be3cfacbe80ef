#pragma once

#include <QColor>
#include <QList>

namespace yrw {

/// Colour of a number &H00BBGGRR, and back.
[[nodiscard]] inline QColor colourOfBgr(int colour) {
    return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF};
}
[[nodiscard]] inline int bgrOfColour(const QColor& colour) {
    return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

/// What a frame or a sign should have to be seen, and what text should have to be read with ease.
constexpr double kVisibleContrast = 3;
constexpr double kReadableContrast = 4.5;

/// Contrast of two opaque colours, 1 (none) to 21 (black on white), as accessibility guidelines
/// count it.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);

/// A colour for a frame or a sign that can be seen on each of some backgrounds: the wanted one when
/// it can, else the nearest lightness of its hue that can; where none can, the one that comes
/// closest.
[[nodiscard]] QColor visibleOn(const QList<QColor>& backgrounds, const QColor& wanted);

/// A text colour that can be read on a background: the wanted one when it can, else the same hue
/// made lighter or darker, at last white or black.
[[nodiscard]] QColor readableOn(const QColor& background, const QColor& wanted);

/// Colour of plain text on a background: the wanted one when it can be read well, else black or
/// white.
[[nodiscard]] QColor textOn(const QColor& background, const QColor& wanted);

/// Two colours mixed; `share` is that of the first, 0 to 1.
[[nodiscard]] QColor blended(const QColor& front, const QColor& back, double share);

} // namespace yrw
