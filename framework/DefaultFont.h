#pragma once

#include "framework/Settings.h"
#include "platform/prompt/Prompt.h"

namespace yrw {

/// The user's font for new text, from the settings; a value that cannot be read gives its default.
[[nodiscard]] FontChoice defaultFont(const NotesSettings& settings);
/// Makes a font the user's default.
void storeDefaultFont(NotesSettings& settings, const FontChoice& font);

} // namespace yrw
