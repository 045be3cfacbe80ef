#pragma once

#include "framework/Settings.h"
#include "notes_window/NoteTool.h"

#include <span>

namespace yrw {

class WindowContext;

/// An option that a check tool shows and the settings store keeps.
struct OptionTool {
    NoteTool tool;
    const setting::Flag* setting;
};

[[nodiscard]] std::span<const OptionTool> optionTools();
/// Stores an option; the process follows it.
void switchOption(NoteTool tool, bool on, WindowContext& context);

} // namespace yrw
