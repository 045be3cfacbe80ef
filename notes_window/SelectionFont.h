#pragma once

#include "platform/prompt/Prompt.h"

namespace yrw {

class RichTextBox;

/// Font and colour of the selected text, or of what is typed next where none is selected.
[[nodiscard]] FontChoice fontOfSelection(const RichTextBox& box);

/// Gives the selected text the parts of a font that are not mixed, as one step for undo.
void setFontOfSelection(RichTextBox& box, const FontChoice& font);

} // namespace yrw
