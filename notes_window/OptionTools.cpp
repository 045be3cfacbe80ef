#include "notes_window/OptionTools.h"

#include "notes_window/WindowContext.h"

#include <algorithm>
#include <array>

namespace yrw {

std::span<const OptionTool> optionTools() {
    static const std::array table{
        OptionTool{NoteTool::CheckReminders, QStringLiteral("CheckForReminders"),
                   NotesSwitch::CheckForReminders},
        OptionTool{NoteTool::CheckAutoNotes, QStringLiteral("CheckAutoNotes"),
                   NotesSwitch::CheckAutoNotes},
        OptionTool{NoteTool::ShowAutoPopup, QStringLiteral("ShowPopupWindow"),
                   NotesSwitch::ShowPopupWindow},
        OptionTool{NoteTool::HighlightNotesRow, QStringLiteral("HighlightNotesRow"),
                   NotesSwitch::HighlightNotesRow},
        OptionTool{NoteTool::FlagNotesRow, QStringLiteral("FlagNotesRow"),
                   NotesSwitch::FlagNotesRow},
    };
    return table;
}

void switchOption(NoteTool tool, bool on, WindowContext& context) {
    const std::span<const OptionTool> options = optionTools();
    const auto option = std::find_if(options.begin(), options.end(),
                                     [&](const OptionTool& each) { return each.tool == tool; });
    INotesAddIn& addIn = context.addIn();
    context.settings().setBoolean(option->settingKey, on);
    addIn.setSwitch(option->which, on);
    switch (option->which) {
    case NotesSwitch::CheckForReminders:
        addIn.setReminderTimerEnabled(on);
        break;
    case NotesSwitch::CheckAutoNotes:
        addIn.setAutoNoteTimerEnabled(on);
        break;
    case NotesSwitch::HighlightNotesRow:
    case NotesSwitch::FlagNotesRow:
        addIn.repaintGrids();
        break;
    case NotesSwitch::ShowPopupWindow:
        break;
    }
}

} // namespace yrw
