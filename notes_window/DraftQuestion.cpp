#include "notes_window/DraftQuestion.h"

#include "notes_window/NoteDrafts.h"
#include "notes_window/NoteTexts.h"
#include "platform/prompt/Prompt.h"

namespace yrw {

namespace {

const QString kTitle = QStringLiteral("Unsaved Text");

} // namespace

DraftAnswer askAboutDraft(Prompt& prompt, const NoteDraft& draft, const QString& subject,
                          const QDateTime& now) {
    const bool isToday = draft.written.date() == now.date();
    const QString when = isToday ? noteTimeText(draft.written) : noteDateText(draft.written);
    const PromptAnswer answer = prompt.question(
        QStringLiteral("Unsaved text of %1 was found for the note \"%2\".\r\rDo "
                       "you want to take it over?\rNo throws it away.")
            .arg(when, subject),
        kTitle, PromptButtons::YesNoCancel, PromptIcon::Question, PromptAnswer::Yes);
    switch (answer) {
    case PromptAnswer::Yes:
        return DraftAnswer::TakeOver;
    case PromptAnswer::No:
        return DraftAnswer::ThrowAway;
    default:
        return DraftAnswer::Later;
    }
}

DraftAnswer askAboutOrphan(Prompt& prompt, const NoteDraft& draft) {
    ChoiceRequest request;
    request.title = kTitle;
    request.text = QStringLiteral("Unsaved text of %1 was found, but its note was deleted "
                                  "meanwhile.\r\rDo you want to keep it as a new note in this "
                                  "list?")
                       .arg(noteDateText(draft.written));
    request.buttons = {QStringLiteral("&Keep as a new note"), QStringLiteral("&Throw away"),
                       QStringLiteral("&Ask again later")};
    request.escapeButton = 2;
    constexpr DraftAnswer answers[] = {DraftAnswer::TakeOver, DraftAnswer::ThrowAway,
                                       DraftAnswer::Later};
    return answers[prompt.choose(request)];
}

bool askToLose(Prompt& prompt, const QString& subject, const QString& problem) {
    return prompt.question(
               QStringLiteral("The text of the note \"%1\" could not be saved, and no copy of it "
                              "could be kept (%2).\r\rIf you leave the note now, what you typed "
                              "since it was last saved is lost. Do you want to leave it?")
                   .arg(subject, problem),
               kTitle, PromptButtons::YesNo, PromptIcon::Exclamation,
               PromptAnswer::No) == PromptAnswer::Yes;
}

} // namespace yrw
