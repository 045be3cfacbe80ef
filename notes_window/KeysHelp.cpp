#include "notes_window/KeysHelp.h"

#include "dialogs/Hourglass.h"
#include "notes_window/WindowContext.h"

namespace yrw {

namespace {

constexpr int kHelpTopic = 110000;

} // namespace

void showHelp(WindowContext& context) {
    bool shown = false;
    {
        const Hourglass hourglass(context.prompt());
        const Ref<IHostApplication> host = context.notes().hostApplication();
        shown = host && host->ShowHelp(kHelpTopic);
    }
    if (!shown) {
        context.prompt().message(
            QStringLiteral("Insert or Ctrl+A: add a note\rEnter or F2: edit the note's properties\r"
                           "Delete or Ctrl+D: delete the note\rCtrl+F: find\rCtrl+S: save\r"
                           "Ctrl+P: print\rF6: between list and text\rCtrl+B, Ctrl+I, Ctrl+U: "
                           "bold, italic, underline\r"
                           "Ctrl+Shift+D, Ctrl+Shift+T: insert the date, the time\r"
                           "Ctrl+Shift+M: insert date, time and your name\r"
                           "Ctrl+Shift+F: attach a file\rEscape: save and close"),
            QStringLiteral("Keys of the Notes Window"), PromptIcon::Information);
    }
}

} // namespace yrw
