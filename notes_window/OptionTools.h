#pragma once

#include "framework/INotesParent.h"
#include "framework/Settings.h"
#include "notes_window/NoteTool.h"

#include <span>

namespace yrw {

class WindowContext;

/// An option that a check tool shows, the settings store keeps and the process follows.
struct OptionTool {
    NoteTool tool;
    const setting::Flag* setting;
    NotesSwitch which;
};

[[nodiscard]] std::span<const OptionTool> optionTools();
/// Stores an option and has the add-in follow it.
void switchOption(NoteTool tool, bool on, WindowContext& context);

} // namespace yrw
