// Saving the text: the record's update, conflicts with other users, and drafts.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/DraftQuestion.h"
#include "notes_window/MultipleFieldUpdate.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"

#include <QScopedValueRollback>
#include <QTextCursor>

#include <array>
#include <utility>

namespace yrw {

namespace {

const QString kProblem = QStringLiteral("Notes Problem");
const QString kRtfNote = QStringLiteral("RTFNote");
const QString kPlainNote = QStringLiteral("PlainNote");
const QString kChangeDate = QStringLiteral("ChangeDate");

/// A text field's value: empty text is Null.
QVariant textOrNull(const QString& text) {
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace

bool frmMain::SaveNote() {
    bool saved = true;
    if (m_note && m_dirty) {
        ShowStatus(QStringLiteral("Saving changes..."));
        const Hourglass hourglass(prompt());
        saved = mayOverwrite() &&
                reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.SaveNote"),
                             QStringLiteral("Could not Save the Note"), kProblem,
                             [this] { writeText(); });
        if (saved) {
            m_drafts.remove(m_note->value(QStringLiteral("RecordID")).toLongLong());
            m_finder->forget();
            ShowStatus(QStringLiteral("Done"));
        } else if (writeDraft()) {
            ShowStatus(QStringLiteral("Not saved. A copy of the text is kept."));
        } else {
            ShowStatus(QStringLiteral("Not saved, and no copy of the text could be kept: %1")
                           .arg(m_drafts.problem()));
            return false; // it is nowhere but in the editor, which stays dirty
        }
    }
    setDirty(false);
    return saved;
}

/// Saves the text. False when it could be neither saved nor kept and the user does not want to
/// lose it: then the note stays.
bool frmMain::mayLeaveText() {
    if (SaveNote() || !m_dirty) {
        return true;
    }
    const bool lose =
        askToLose(prompt(), HostUtility::NullToText(m_note->value(QStringLiteral("Subject"))),
                  m_drafts.problem());
    setDirty(!lose);
    return lose;
}

/// Asks, once for each note, before a text that could not be read whole is replaced by what is
/// shown of it.
bool frmMain::mayOverwrite() {
    const qint64 id = m_note->value(QStringLiteral("RecordID")).toLongLong();
    if (!m_rtxMain->isIncomplete() || m_overwritable == id) {
        return true;
    }
    const PromptAnswer answer = prompt().question(
        QStringLiteral("The stored text of this note is damaged and could not be read whole. "
                       "Saving replaces it by what is shown; what could not be read is then "
                       "lost.\r\rDo you want to save?"),
        QStringLiteral("Damaged Note"), PromptButtons::YesNo, PromptIcon::Exclamation,
        PromptAnswer::No);
    m_overwritable = answer == PromptAnswer::Yes ? id : m_overwritable;
    return answer == PromptAnswer::Yes;
}

/// Writes the text over the reading that it began from, and else settles with the one that stands
/// there; again when somebody saves while the user is asked.
void frmMain::writeText() {
    constexpr int kRounds = 20; // a bound, should a row never be still
    for (int round = 0;; ++round) {
        try {
            if (round == 0) {
                writeTextInto(*m_note);
            } else {
                settleConflict();
            }
            return;
        } catch (const AutomationError& error) {
            if (error.number() != kErrorConflict || round == kRounds) {
                throw;
            }
        }
    }
}

void frmMain::writeTextInto(Note& note) {
    const RichTextBox::Texts texts = m_rtxMain->texts(savingWatch());
    const QVariant rtf = m_rtxMain->isEmpty() ? QVariant() : textOrNull(texts.rtf);
    MultipleFieldUpdate update(note);
    update.set(kPlainNote, textOrNull(texts.plain));
    update.set(kRtfNote, rtf);
    update.set(kChangeDate, services().clock.now());
    update.end();
    m_loadedText = rtf;
    m_textIsStored = true;
}

/// Says in the status bar how far a long save is. It cannot be stopped, and no events are handled:
/// whatever is saved is saved as it was when the save began.
std::function<void(int)> frmMain::savingWatch() {
    constexpr qint64 patienceMs = 500;
    constexpr qint64 refreshMs = 100;
    const Clock& clock = services().clock;
    return [this, &clock, next = clock.monotonicMs() + patienceMs](int percent) mutable {
        if (clock.monotonicMs() >= next) {
            ShowStatus(QStringLiteral("Saving changes: %1 %...").arg(percent));
            next = clock.monotonicMs() + refreshMs;
        }
    };
}

void frmMain::settleConflict() {
    const Ref<Note> theirs = m_list->note(m_note->value(QStringLiteral("RecordID")).toLongLong());
    if (theirs->value(kRtfNote) != m_loadedText) {
        switch (askWhoseText(*theirs)) {
        case TextChoice::Theirs:
            m_note = m_list->note(m_note->value(QStringLiteral("RecordID")).toLongLong());
            putIntoEditor(*m_note);
            return;
        case TextChoice::Both:
            appendOther(*theirs);
            break;
        case TextChoice::Mine:
            break;
        }
    }
    // Their other fields stay as they are; only the text is written again.
    writeTextInto(*theirs);
    m_note = theirs;
}

frmMain::TextChoice frmMain::askWhoseText(Note& theirs) {
    const QString code = HostUtility::NullToText(theirs.value(QStringLiteral("ChangeUserCode")));
    const QString name = code.isEmpty() ? QStringLiteral("someone else") : m_names.of(code);
    const QString day = noteDayText(theirs.value(kChangeDate).toDateTime());
    const QString when = noteTimeText(theirs.value(kChangeDate).toDateTime());
    const QString now = noteTimeText(services().clock.now());
    ChoiceRequest request;
    request.title = QStringLiteral("Note Changed");
    request.text = QStringLiteral("While you were changing this note, %1 saved another text of it "
                                  "on %2 at %3.\r\rWhich text is to be kept?")
                       .arg(name, day, when);
    request.buttons = {QStringLiteral("Keep &both, one after the other"),
                       QStringLiteral("Keep &mine (%1, %2)").arg(m_names.ofCurrentUser(), now),
                       QStringLiteral("Keep &theirs (%1, %2)").arg(name, when)};
    constexpr std::array choices{TextChoice::Both, TextChoice::Mine, TextChoice::Theirs};
    return choices[size_t(prompt().choose(request))];
}

void frmMain::appendOther(Note& theirs) {
    const QScopedValueRollback<bool> loading(m_loading, true);
    const QString code = HostUtility::NullToText(theirs.value(QStringLiteral("ChangeUserCode")));
    AppendText(noteStampText(theirs.value(kChangeDate).toDateTime(), m_names.of(code)), true, true);
    QTextCursor cursor(m_rtxMain->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock();
    m_rtxMain->setTextCursor(cursor);
    m_rtxMain->setSelRTF(HostUtility::NullToText(theirs.value(kRtfNote)));
}

void frmMain::rememberLoaded(Note& note) {
    m_loadedText = note.value(kRtfNote);
}

/// Writes the draft of changed text; false when that failed, which the status bar says at once.
bool frmMain::writeDraft() {
    if (!m_note || !m_dirty) {
        return true;
    }
    bool kept = false;
    ignoreErrors([&] {
        kept = m_drafts.write({m_note->value(QStringLiteral("RecordID")).toLongLong(),
                               services().clock.now(), m_rtxMain->TextRTF(), QString()});
    });
    if (!kept) {
        ShowStatus(
            QStringLiteral("No copy of the unsaved text can be kept: %1").arg(m_drafts.problem()));
    } else if (m_draftFailed) {
        ShowStatus(QStringLiteral("A copy of the unsaved text is kept again."));
    }
    m_draftFailed = !kept;
    return kept;
}

/// Offers the text of a note that a crash or a failed save left; once the window can be seen.
void frmMain::offerDraft(qint64 noteID) {
    if (!isVisible()) {
        return; // `showEvent` sees to it
    }
    if (m_context.isReadOnly()) {
        return; // it is kept for when it can be saved
    }
    while (const std::optional<NoteDraft> draft = m_drafts.find(noteID)) {
        switch (askAboutDraft(prompt(), *draft,
                              HostUtility::NullToText(m_note->value(QStringLiteral("Subject"))),
                              services().clock.now())) {
        case DraftAnswer::TakeOver:
            takeOver(*draft);
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

void frmMain::takeOver(const NoteDraft& draft) {
    bool whole = false;
    {
        const QScopedValueRollback<bool> loading(m_loading, true);
        m_textIsStored = false;
        whole = readIntoEditor(draft.rtf);
    }
    UpdateToolStates();
    if (!whole) {
        return; // it is offered again with the note
    }
    setDirty(true);
    rtxMain_SelChange();
    if (writeDraft() && draft.file != m_drafts.fileOf(draft.noteID)) {
        NoteDrafts::remove(draft); // it was put aside; now it is the note's draft
    }
}

void frmMain::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    // Questions about text that was left come over the window, not before it.
    QTimer::singleShot(0, this, [this] {
        ignoreErrors([this] {
            if (!isVisible() || std::exchange(m_draftsOffered, true)) {
                return;
            }
            offerDraftsOfDeletedNotes();
            if (m_note) {
                offerDraft(m_note->value(QStringLiteral("RecordID")).toLongLong());
            }
        });
    });
}

bool frmMain::isDeleted(qint64 noteID) const {
    const Ref<dao::Recordset> row = m_context.store().dataHelper().OpenRecordset(
        QStringLiteral("SELECT tblNotes.* FROM tblNotes WHERE [RecordID]=%1").arg(noteID));
    const bool deleted = row->AtEof();
    row->Close();
    return deleted;
}

/// Text whose note somebody deleted while it was typed has nowhere to go: it is offered wherever
/// the window opens next.
void frmMain::offerDraftsOfDeletedNotes() {
    for (const qint64 id : m_drafts.noteIDs()) {
        const std::optional<NoteDraft> draft = m_drafts.find(id);
        if (!draft || m_context.isReadOnly() || !isDeleted(id)) {
            continue;
        }
        const DraftAnswer answer = askAboutOrphan(prompt(), *draft);
        const bool isTaken = !m_drafts.find(id); // another window may have answered meanwhile
        const bool done =
            answer != DraftAnswer::TakeOver || isTaken ||
            reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.SaveNote"),
                         QStringLiteral("Could not Save the Note"), kProblem,
                         [&] { keepAsNewNote(*draft); });
        if (done && !isTaken && answer != DraftAnswer::Later) {
            NoteDrafts::remove(*draft);
        }
    }
}

void frmMain::keepAsNewNote(const NoteDraft& draft) {
    NoteChoices choices;
    choices.Date = services().clock.now();
    choices.Subject = QStringLiteral("Text of a deleted note, %1").arg(noteDateText(draft.written));
    const Ref<Note> made = createNote(m_context.application(), m_context.store(),
                                      ownerOf(m_owner, m_context.store()), choices);
    RichTextBox text;
    text.setTextRTF(draft.rtf);
    MultipleFieldUpdate update(*made);
    update.set(kPlainNote, textOrNull(text.Text()));
    update.set(kRtfNote, textOrNull(draft.rtf));
    update.end();
    showRow(made);
}

} // namespace yrw
