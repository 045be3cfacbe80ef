#pragma once

namespace yrw {

struct NoteDraft;
class EditedNote;
class NoteDrafts;
class NotesList;
class WindowContext;

/// Offers the text that a crash or a failed save left, once the window can be seen.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class LeftDrafts {
public:
    LeftDrafts(NoteDrafts& drafts, EditedNote& edited, NotesList& list, WindowContext& context);

    /// Offers that of the note that is shown.
    void offer();
    /// The window has come up: offers what there is, once.
    void offerAll();

private:
    void offerOfDeletedNotes();
    void keepAsNewNote(const NoteDraft& draft);

    NoteDrafts& m_drafts;
    EditedNote& m_edited;
    NotesList& m_list;
    WindowContext& m_context;
    bool m_offered = false;
};

} // namespace yrw
