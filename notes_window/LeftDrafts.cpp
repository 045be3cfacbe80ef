#include "notes_window/LeftDrafts.h"

#include "notes_window/DraftQuestion.h"
#include "notes_window/EditedNote.h"
#include "notes_window/NoteDrafts.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "notes_window/WindowContext.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"
#include "store/NoteReading.h"
#include "store/Operations.h"

#include <QWidget>

#include <utility>

namespace yrw {

LeftDrafts::LeftDrafts(NoteDrafts& drafts, EditedNote& edited, NotesList& list,
                       WindowContext& context)
    : m_drafts(drafts), m_edited(edited), m_list(list), m_context(context) {}

void LeftDrafts::offer() {
    if (!m_context.window().isVisible()) {
        return; // `offerAll` sees to it
    }
    if (m_context.isReadOnly()) {
        return; // it is kept for when it can be saved
    }
    while (const std::optional<NoteDraft> draft = m_drafts.find(m_edited.id())) {
        switch (askAboutDraft(m_context.prompt(), *draft, m_edited.subject(),
                              m_context.clock().now())) {
        case DraftAnswer::TakeOver:
            m_edited.takeOver(*draft);
            return;
        case DraftAnswer::Later:
            m_drafts.putAside(*draft);
            return;
        case DraftAnswer::ThrowAway:
            NoteDrafts::remove(*draft);
            break;
        }
    }
}

void LeftDrafts::offerAll() {
    if (!m_context.window().isVisible() || std::exchange(m_offered, true)) {
        return;
    }
    offerOfDeletedNotes();
    if (m_edited.note()) {
        offer();
    }
}

/// Text whose note somebody deleted while it was typed has nowhere to go: it is offered wherever
/// the window opens next.
void LeftDrafts::offerOfDeletedNotes() {
    for (const qint64 id : m_drafts.noteIDs()) {
        const std::optional<NoteDraft> draft = m_drafts.find(id);
        if (!draft || m_context.isReadOnly() || hasNote(m_context.application(), id)) {
            continue;
        }
        const DraftAnswer answer = askAboutOrphan(m_context.prompt(), *draft);
        const bool isTaken = !m_drafts.find(id); // another window may have answered meanwhile
        const bool done =
            answer != DraftAnswer::TakeOver || isTaken ||
            m_context.report(QStringLiteral("SaveNote"), QStringLiteral("Could not Save the Note"),
                             [&] { keepAsNewNote(*draft); });
        if (done && !isTaken && answer != DraftAnswer::Later) {
            NoteDrafts::remove(*draft);
        }
    }
}

void LeftDrafts::keepAsNewNote(const NoteDraft& draft) {
    NoteChoices choices;
    choices.Date = m_context.clock().now();
    choices.Subject = QStringLiteral("Text of a deleted note, %1").arg(noteDateText(draft.written));
    RichTextBox text;
    text.setTextRTF(draft.rtf);
    StoreContext& store = m_context.notes();
    m_list.replace(createWholeNote(m_context.application(), store, ownerOf(m_list.owner(), store),
                                   choices, noteText(draft.rtf, text.Text()), {}));
}

} // namespace yrw
