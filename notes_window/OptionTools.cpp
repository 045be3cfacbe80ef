#include "notes_window/OptionTools.h"

#include "notes_window/WindowContext.h"

#include <algorithm>
#include <array>

namespace yrw {

std::span<const OptionTool> optionTools() {
    static const std::array table{
        OptionTool{NoteTool::CheckReminders, &setting::kCheckForReminders},
        OptionTool{NoteTool::CheckAutoNotes, &setting::kCheckAutoNotes},
        OptionTool{NoteTool::ShowAutoPopup, &setting::kShowPopupWindow},
        OptionTool{NoteTool::HighlightNotesRow, &setting::kHighlightNotesRow},
        OptionTool{NoteTool::FlagNotesRow, &setting::kFlagNotesRow},
    };
    return table;
}

void switchOption(NoteTool tool, bool on, WindowContext& context) {
    const std::span<const OptionTool> options = optionTools();
    const auto option = std::find_if(options.begin(), options.end(),
                                     [&](const OptionTool& each) { return each.tool == tool; });
    context.settings().set(*option->setting, on);
}

} // namespace yrw
