#include "notes_window/EditedNote.h"

#include "dialogs/Hourglass.h"
#include "framework/DefaultFont.h"
#include "notes_window/AppendedText.h"
#include "notes_window/ConflictQuestion.h"
#include "notes_window/DraftQuestion.h"
#include "notes_window/LongWork.h"
#include "notes_window/NoteDrafts.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "notes_window/UserNames.h"
#include "notes_window/WindowContext.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"
#include "store/NoteReading.h"
#include "store/Operations.h"

#include <QScopedValueRollback>
#include <QTextCursor>

#include <utility>

namespace yrw {

namespace {

constexpr int kDraftMs = 1800; ///< with the writing less than the two seconds promised
const QString kPlainNote = QStringLiteral("PlainNote");
const QString kRtfNote = QStringLiteral("RTFNote");
const QString kChangeDate = QStringLiteral("ChangeDate");

} // namespace

EditedNote::EditedNote(RichTextBox& text, NotesList& list, NoteDrafts& drafts, UserNames& names,
                       WindowContext& context)
    : m_text(text), m_list(list), m_drafts(drafts), m_names(names), m_context(context) {
    m_draftTimer.setSingleShot(true);
    m_draftTimer.setInterval(kDraftMs);
    QObject::connect(&m_draftTimer, &QTimer::timeout, &m_draftTimer, [this] { keepDraft(); });
}

QString EditedNote::subject() const {
    return HostUtility::NullToText(m_note->value(QStringLiteral("Subject")));
}

void EditedNote::enter(State state) {
    m_state = state;
    if (!isChanged()) {
        m_draftTimer.stop();
    }
    stateChanged.raise();
}

// Showing.

void EditedNote::show(qint64 id) {
    m_wanted = id;
    if (m_isShowing) {
        return; // the note that is being read gives way
    }
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    while (m_wanted) {
        const qint64 next = *std::exchange(m_wanted, std::nullopt);
        m_context.report(QStringLiteral("ShowNote"), QStringLiteral("Could not Show the Note"),
                         [&] { showNow(next); });
    }
}

void EditedNote::showNow(qint64 id) {
    if (!mayLeave()) {
        m_list.view().selectKey(noteItemKey(m_id));
        return;
    }
    if (id == 0) {
        clear();
        noteChanged.raise();
        return;
    }
    const Hourglass hourglass(m_context.prompt());
    m_context.showStatus(QStringLiteral("Getting Note..."));
    try {
        const Ref<Note> note = m_list.note(id);
        // The same text again stays, and what was undone and can be undone with it.
        const bool same = (m_state == State::Stored || m_state == State::Aside) && m_id == id &&
                          note->value(kRtfNote) == m_storedText;
        m_note = note;
        m_text.setEnabled(true);
        if (same) {
            enter(State::Stored);
        } else {
            load(*m_note);
        }
    } catch (...) {
        // Never leave another note's text where the user would type into it.
        clear();
        noteChanged.raise();
        m_context.showStatus(QString());
        throw;
    }
    noteChanged.raise();
    m_context.showStatus(QStringLiteral("Done"));
    if (!m_wanted) {
        settled.raise();
    }
    if (isCut()) {
        showCut();
    } else if (m_isPlainShown) {
        m_context.showStatus(QStringLiteral("The rich text of this note cannot be read; its plain "
                                            "text is shown."));
    }
}

void EditedNote::load(Note& note) {
    bool whole = true;
    {
        const QScopedValueRollback<State> loading(m_state, State::Loading);
        const bool readOnly = m_context.isReadOnly();
        m_text.setPlaceholderText(readOnly ? QStringLiteral("This note has no text.")
                                           : QStringLiteral("Type the text of the note here."));
        m_text.setEnabled(true);
        m_storedText = note.value(kRtfNote);
        m_id = note.value(QStringLiteral("RecordID")).toLongLong();
        const QString rtf = HostUtility::NullToText(m_storedText);
        const QString plain = HostUtility::NullToText(note.value(kPlainNote));
        const QString text = readableText(rtf, plain);
        m_isPlainShown = !rtf.isEmpty() && text != rtf;
        if (!text.isEmpty()) {
            whole = read(text); // one that was stopped is read anew next time
            if (whole && m_text.isIncomplete() && m_text.isEmpty() && !plain.isEmpty()) {
                m_isPlainShown = true;
                whole = read(plain);
            }
        } else {
            m_text.setReadOnly(readOnly);
            m_text.setText(QString());
            m_text.selection().setColour(defaultFont(m_context.settings()).colour);
        }
    }
    enter(whole ? State::Stored : State::Cut);
}

/// Shows how far the reading of a long text is, and lets the user stop it; false when he did. What
/// was read by then can be looked at, but not changed: to save it would lose the rest.
bool EditedNote::read(const QString& rtf) {
    LongWork work(m_context.clock(), &m_context.window(),
                  QStringLiteral("Reading the note: %1 %."));
    const bool whole =
        m_text.setTextRTF(rtf, [&](int percent) { return work.goOn(percent) && !m_wanted; });
    m_text.setReadOnly(!whole || m_context.isReadOnly());
    return whole;
}

void EditedNote::showCut() {
    const QString why = m_text.shortening();
    m_context.showStatus(
        why.isEmpty() ? QStringLiteral("Stopped: only the beginning of this note is shown, and it "
                                       "cannot be changed. Choose the note again to read all of "
                                       "it.")
                      : why);
}

void EditedNote::setAside() {
    m_note.reset();
    enter(m_state == State::Stored ? State::Aside : State::Empty);
}

void EditedNote::clear() {
    {
        const QScopedValueRollback<State> loading(m_state, State::Loading);
        m_note.reset();
        m_id = 0;
        m_text.setReadOnly(false);
        m_text.setText(QString());
        m_text.setPlaceholderText(QStringLiteral("The text of the selected note is shown here."));
        turnOff();
    }
    enter(State::Empty);
}

void EditedNote::turnOff() {
    if (m_context.window().focusWidget() == &m_text) {
        m_list.view().setFocus(); // else the keyboard would be nowhere
    }
    m_text.setEnabled(false);
}

void EditedNote::textChanged() {
    switch (m_state) {
    case State::Loading:
    case State::Empty:
    case State::Cut: // what shows only the beginning of a note is never saved
        return;
    case State::Aside:
        enter(State::Empty);
        return;
    case State::Stored:
    case State::Kept:
        enter(State::Changed);
        break;
    case State::Changed:
        break;
    }
    if (!m_draftTimer.isActive()) {
        m_draftTimer.start();
    }
}

// Saving.

bool EditedNote::save() {
    if (!isChanged()) {
        return true;
    }
    m_context.showStatus(QStringLiteral("Saving changes..."));
    const Hourglass hourglass(m_context.prompt());
    const bool isSaved =
        mayOverwrite() &&
        m_context.report(QStringLiteral("SaveNote"), QStringLiteral("Could not Save the Note"),
                         [this] { write(); });
    if (isSaved) {
        m_drafts.remove(m_id);
        saved.raise();
        m_context.showStatus(QStringLiteral("Done"));
    } else if (keepDraft()) {
        enter(State::Kept);
        m_context.showStatus(QStringLiteral("Not saved. A copy of the text is kept."));
    } else { // it is nowhere but in the editor
        m_context.showStatus(QStringLiteral("Not saved, and no copy of the text could be kept: %1")
                                 .arg(m_drafts.problem()));
    }
    return isSaved;
}

bool EditedNote::mayLeave() {
    if (save() || !isChanged()) {
        return true;
    }
    const bool lose = askToLose(m_context.prompt(), subject(), m_drafts.problem());
    if (lose) {
        enter(State::Kept);
    }
    return lose;
}

/// Asks, once for each note, before a text that could not be read whole is replaced by what is
/// shown of it.
bool EditedNote::mayOverwrite() {
    const bool isWhole = !m_text.isIncomplete() && !m_isPlainShown;
    if (isWhole || m_overwritable == m_id) {
        return true;
    }
    const PromptAnswer answer = m_context.prompt().question(
        QStringLiteral("The stored text of this note is damaged and could not be read whole. "
                       "Saving replaces it by what is shown; what could not be read is then "
                       "lost.\r\rDo you want to save?"),
        QStringLiteral("Damaged Note"), PromptButtons::YesNo, PromptIcon::Exclamation,
        PromptAnswer::No);
    m_overwritable = answer == PromptAnswer::Yes ? m_id : m_overwritable;
    return answer == PromptAnswer::Yes;
}

/// Writes the text over the reading that it began from, and else settles with the one that stands
/// there; again when somebody saves while the user is asked.
void EditedNote::write() {
    constexpr int kRounds = 20; // a bound, should a row never be still
    for (int round = 0;; ++round) {
        try {
            if (round == 0) {
                writeInto(*m_note);
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

void EditedNote::writeInto(Note& note) {
    const RichTextBox::Texts texts = m_text.texts(savingWatch());
    const NoteText text = noteText(m_text.isEmpty() ? QString() : texts.rtf, texts.plain);
    storeText(note, text, m_context.clock().now());
    m_storedText = text.rich;
    m_isPlainShown = false;
    enter(State::Stored);
}

/// Says in the status bar how far a long save is. It cannot be stopped, and no events are handled:
/// whatever is saved is saved as it was when the save began.
std::function<void(int)> EditedNote::savingWatch() {
    constexpr qint64 patienceMs = 500;
    constexpr qint64 refreshMs = 100;
    const Clock& clock = m_context.clock();
    return [this, &clock, next = clock.monotonicMs() + patienceMs](int percent) mutable {
        if (clock.monotonicMs() >= next) {
            m_context.showStatus(QStringLiteral("Saving changes: %1 %...").arg(percent));
            next = clock.monotonicMs() + refreshMs;
        }
    };
}

void EditedNote::settleConflict() {
    const Ref<Note> theirs = m_list.note(m_id);
    if (theirs->value(kRtfNote) != m_storedText) {
        const ChangedText other{
            m_names.of(HostUtility::NullToText(theirs->value(QStringLiteral("ChangeUserCode")))),
            theirs->value(kChangeDate).toDateTime()};
        switch (askWhoseText(m_context.prompt(), other,
                             {m_names.ofCurrentUser(), m_context.clock().now()})) {
        case TextChoice::Theirs:
            m_note = m_list.note(m_id);
            load(*m_note);
            return;
        case TextChoice::Both:
            appendOther(*theirs);
            break;
        case TextChoice::Mine:
            break;
        }
    }
    // Their other fields stay as they are; only the text is written again.
    writeInto(*theirs);
    m_note = theirs;
}

void EditedNote::appendOther(Note& theirs) {
    const QScopedValueRollback<State> loading(m_state, State::Loading);
    const QString code = HostUtility::NullToText(theirs.value(QStringLiteral("ChangeUserCode")));
    appendText(m_text, noteStampText(theirs.value(kChangeDate).toDateTime(), m_names.of(code)),
               true, true);
    QTextCursor cursor(m_text.document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock();
    m_text.setTextCursor(cursor);
    m_text.transfer().insertRtf(HostUtility::NullToText(theirs.value(kRtfNote)));
}

// Drafts.

bool EditedNote::keepDraft() {
    if (!isChanged()) {
        return true;
    }
    bool kept = false;
    ignoreErrors([&] {
        kept = m_drafts.write({m_id, m_context.clock().now(), m_text.TextRTF(), QString()});
    });
    if (!kept) {
        m_context.showStatus(
            QStringLiteral("No copy of the unsaved text can be kept: %1").arg(m_drafts.problem()));
    } else if (m_draftFailed) {
        m_context.showStatus(QStringLiteral("A copy of the unsaved text is kept again."));
    }
    m_draftFailed = !kept;
    return kept;
}

void EditedNote::takeOver(const NoteDraft& draft) {
    bool whole = false;
    {
        const QScopedValueRollback<State> loading(m_state, State::Loading);
        whole = read(draft.rtf);
    }
    enter(whole ? State::Changed : State::Cut); // one that was stopped is offered again
    noteChanged.raise();
    if (whole && keepDraft() && draft.file != m_drafts.fileOf(draft.noteID)) {
        NoteDrafts::remove(draft); // it was put aside; now it is the note's draft
    }
}

} // namespace yrw
