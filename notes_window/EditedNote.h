#pragma once

#include "platform/component/Event.h"
#include "store/Collections.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace yrw {

struct NoteDraft;
class NoteDrafts;
class NotesList;
class RichTextBox;
class UserNames;
class WindowContext;

/// The note in the editor: its text, how far that is from what is stored, and the ways between the
/// two: loading, saving, conflicts with other users, damage, drafts.
///
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class EditedNote {
public:
    /// How the editor stands to the stored text.
    ///
    ///     show:   any → Loading → Stored or Cut; Aside → Stored where the text is the same
    ///     typing: Stored, Kept → Changed         saving: Changed → Stored, Kept or Changed
    ///     taking over a draft: → Loading → Changed or Cut
    ///     setting aside: Stored → Aside, others → Empty         clearing: any → Empty
    enum class State {
        Empty,   ///< no note is shown
        Aside,   ///< no note is shown, but the editor holds the stored text of the last one
        Loading, ///< text is put in by code: its changes are not the user's
        Stored,  ///< the text is the stored one
        Changed, ///< the user has changed the text
        Kept,    ///< changed, and not to be saved any more: a draft has it, or the user let it go
        Cut,     ///< only the beginning of the text is shown, which is never saved
    };

    EditedNote(RichTextBox& text, NotesList& list, NoteDrafts& drafts, UserNames& names,
               WindowContext& context);
    EditedNote(const EditedNote&) = delete;
    EditedNote& operator=(const EditedNote&) = delete;

    [[nodiscard]] bool isLoading() const { return m_state == State::Loading; }
    [[nodiscard]] bool isChanged() const { return m_state == State::Changed; }
    [[nodiscard]] bool isCut() const { return m_state == State::Cut; }
    /// The note that is shown; nothing without one.
    [[nodiscard]] const Ref<Note>& note() const { return m_note; }
    /// Its id; 0 without one.
    [[nodiscard]] qint64 id() const { return m_note ? m_id : 0; }
    [[nodiscard]] QString subject() const;

    /// Puts a note into the editor, 0 for none; typed text of the note before is saved first. One
    /// that is being read gives way. A failure is reported.
    void show(qint64 id);
    /// Shows no note, but leaves the text until it is known which note is shown next: it may be
    /// the same. The text is not saved.
    void setAside();
    /// Empties the editor and turns it off; the text is not saved.
    void clear();
    void turnOff();

    /// The editor's text was changed, by whomever.
    void textChanged();
    /// Writes changed text into the note; false when that failed, which is reported. The text then
    /// stays in the editor and in a draft.
    bool save();
    /// Saves. False when the text could be neither saved nor kept and the user does not want to
    /// lose it: then the note stays.
    [[nodiscard]] bool mayLeave();
    /// Writes the draft of changed text; false when that failed, which the status bar says.
    bool keepDraft();
    /// Writes no draft any more by itself: the window is closed.
    void stop() { m_draftTimer.stop(); }
    /// Puts a draft of the note into the editor, as if it had been typed.
    void takeOver(const NoteDraft& draft);

    Event<> stateChanged;
    Event<> noteChanged; ///< another note is shown, or none, or another text of it
    Event<> settled;     ///< the note is shown and no other is asked for
    Event<> saved;

private:
    void enter(State state);
    void showNow(qint64 id);
    void load(Note& note);
    [[nodiscard]] bool read(const QString& rtf);
    void showCut();
    [[nodiscard]] bool mayOverwrite();
    void write();
    void writeInto(Note& note);
    [[nodiscard]] std::function<void(int percent)> savingWatch();
    void settleConflict();
    void appendOther(Note& theirs);

    RichTextBox& m_text;
    NotesList& m_list;
    NoteDrafts& m_drafts;
    UserNames& m_names;
    WindowContext& m_context;
    State m_state = State::Empty;
    Ref<Note> m_note;
    qint64 m_id = 0;             ///< whose text the editor holds; 0 for none
    QVariant m_storedText;       ///< rich text of that note as it was last read or written
    bool m_isPlainShown = false; ///< the rich text cannot be read
    bool m_isShowing = false;
    std::optional<qint64> m_wanted; ///< the note to be shown after the one that is being shown
    qint64 m_overwritable = 0;      ///< damaged note that the user let be overwritten
    bool m_draftFailed = false;     ///< the last one could not be written
    QTimer m_draftTimer;
};

} // namespace yrw
