#include "notes_window/ConflictQuestion.h"

#include "notes_window/NoteTexts.h"
#include "platform/prompt/Prompt.h"

#include <array>

namespace yrw {

TextChoice askWhoseText(Prompt& prompt, const ChangedText& theirs, const ChangedText& mine) {
    const QString name = theirs.author.isEmpty() ? QStringLiteral("someone else") : theirs.author;
    const QString when = noteTimeText(theirs.date);
    ChoiceRequest request;
    request.title = QStringLiteral("Note Changed");
    request.text = QStringLiteral("While you were changing this note, %1 saved another text of it "
                                  "on %2 at %3.\r\rWhich text is to be kept?")
                       .arg(name, noteDayText(theirs.date), when);
    request.buttons = {
        QStringLiteral("Keep &both, one after the other"),
        QStringLiteral("Keep &mine (%1, %2)").arg(mine.author, noteTimeText(mine.date)),
        QStringLiteral("Keep &theirs (%1, %2)").arg(name, when)};
    constexpr std::array choices{TextChoice::Both, TextChoice::Mine, TextChoice::Theirs};
    return choices[size_t(prompt.choose(request))];
}

} // namespace yrw
