#include "notes_window/OptionTools.h"

#include "notes_window/WindowContext.h"

#include <algorithm>
#include <array>

namespace yrw {

std::span<const OptionTool> optionTools() {
    static const std::array table{
        OptionTool{NoteTool::CheckReminders, &setting::kCheckForReminders,
                   NotesSwitch::CheckForReminders},
        OptionTool{NoteTool::CheckAutoNotes, &setting::kCheckAutoNotes,
                   NotesSwitch::CheckAutoNotes},
        OptionTool{NoteTool::ShowAutoPopup, &setting::kShowPopupWindow,
                   NotesSwitch::ShowPopupWindow},
        OptionTool{NoteTool::HighlightNotesRow, &setting::kHighlightNotesRow,
                   NotesSwitch::HighlightNotesRow},
        OptionTool{NoteTool::FlagNotesRow, &setting::kFlagNotesRow, NotesSwitch::FlagNotesRow},
    };
    return table;
}

void switchOption(NoteTool tool, bool on, WindowContext& context) {
    const std::span<const OptionTool> options = optionTools();
    const auto option = std::find_if(options.begin(), options.end(),
                                     [&](const OptionTool& each) { return each.tool == tool; });
    context.settings().set(*option->setting, on);
    context.parent()->setSwitch(option->which, on);
}

} // namespace yrw
