#pragma once

#include <QString>
#include <QStringView>

namespace yrw::rtf {

/// What foreign HTML may ask of a reader whose work grows faster than its input.
inline constexpr int kDeepestElement = 48;  ///< elements in each other
inline constexpr int kMostHtmlTables = 4;   ///< tables in each other
inline constexpr int kMostHtmlSpan = 60;    ///< columns or rows that a cell goes over
inline constexpr int kMostElements = 50000; ///< in all
inline constexpr qsizetype kLongestAttribute = 1000;

/// HTML that shows the same text and is no deeper, wider or longer than that: what lies deeper
/// stands in the elements around it. Programs, comments, frames and everything that names another
/// file are left out, pictures too unless the HTML holds them. It is well-formed as far as its
/// elements are nested, whatever the input was.
///
/// Time and memory grow with the input's length only.
[[nodiscard]] QString shallowHtml(QStringView html);

/// The text of HTML without its elements: lines where a block begins, entities as characters.
[[nodiscard]] QString textOfHtml(QStringView html);

} // namespace yrw::rtf
