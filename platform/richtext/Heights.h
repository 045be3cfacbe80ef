#pragma once

#include "platform/rtf/Model.h"

namespace yrw::richtext {

/// The most dots that a text may be high, as far as that can be told before it is laid out. The
/// toolkit counts a document's height up to 8,388,607 dots and never ends laying out a higher one.
inline constexpr double kMostHeight = 8'000'000;
/// The width in dots that a text is taken to have: that of the notes window at its narrowest.
inline constexpr double kShownWidth = 390;

/// Dots that a line of this format is high.
[[nodiscard]] double lineHeight(const rtf::CharFormat& chars, const rtf::ParFormat& paragraph,
                                double dotsPerInch);
/// Dots that the space before and after a paragraph adds.
[[nodiscard]] double spacing(const rtf::ParFormat& paragraph, double dotsPerInch);
/// About how many lines the characters fill, in a column of so many dots.
[[nodiscard]] double linesOf(QStringView text, const rtf::CharFormat& chars,
                             const rtf::ParFormat& paragraph, double width, double dotsPerInch);
/// Dots that a picture or object is high.
[[nodiscard]] double heightOf(const rtf::Inline& group, double dotsPerInch);

} // namespace yrw::richtext
