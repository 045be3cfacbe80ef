#pragma once

#include "platform/component/WorkStep.h"
#include "platform/prompt/Prompt.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/rtf/Model.h"

#include <vector>

namespace yrw::richtext {

/// What the text of a rich-text box refers to. Lifetime: the box's.
struct TextParts {
    rtf::Document header; ///< tables and kept groups of the document last loaded
    std::vector<rtf::Inline> inlines;
    InlineRenderer renderer{inlines, InlineRenderer::Target::Screen, nullptr};
    FontChoice font{.name = QStringLiteral("Comic Sans MS")}; ///< of an empty text
};

} // namespace yrw::richtext
