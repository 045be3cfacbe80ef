#pragma once

#include "platform/rtf/Model.h"

namespace yrw {

/// A document as an HTML fragment: paragraphs, lists and tables with their formats. Pictures that a
/// browser can show are embedded; other objects show as a word in brackets; only web and mail links
/// become links.
[[nodiscard]] QString htmlOf(const rtf::Document& document);

} // namespace yrw
