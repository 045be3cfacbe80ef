#pragma once

#include "framework/INotesAddIn.h"
#include "notes_window/NoteTool.h"

#include <QString>

#include <span>

namespace yrw {

class WindowContext;

/// An option that a check tool shows, the settings store keeps and the process follows.
struct OptionTool {
    NoteTool tool;
    QString settingKey;
    NotesSwitch which;
};

[[nodiscard]] std::span<const OptionTool> optionTools();
/// Stores an option and has the add-in follow it.
void switchOption(NoteTool tool, bool on, WindowContext& context);

} // namespace yrw
