#pragma once

#include "store/Operations.h"

namespace yrw {

class EditedNote;
class NoteDrafts;
class NotesList;
class RichTextBox;
class WaitingReminders;
class WindowContext;

/// What the user does with whole notes: adds, changes, deletes and finishes them and cancels their
/// reminders. List and editor follow once it is stored.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class NoteChanges {
public:
    NoteChanges(NotesList& list, EditedNote& edited, NoteDrafts& drafts, RichTextBox& text,
                WaitingReminders& waiting, WindowContext& context);

    void add();
    /// Opens the properties of the note that is shown; a failure is reported.
    void EditNote();
    void deleteSelected();
    void finishSelected();
    void cancelSelectedReminders();

private:
    void openProperties(const Ref<Note>& note);
    void mfrmProperties_AddNote(Ref<Note>& note, const NoteChoices& choices);
    void mfrmProperties_EditNote(Ref<Note>& note, const NoteChoices& choices);
    void mfrmProperties_AddReminder(const Ref<Note>& note, const QDateTime& due, qint64 userID);
    void showAdded(const Ref<IRecord>& note);
    void showChanged(const Ref<Note>& note);
    void deleteStored(qint64 noteID);
    void leave(const QString& item);

    NotesList& m_list;
    EditedNote& m_edited;
    NoteDrafts& m_drafts;
    RichTextBox& m_text;
    WaitingReminders& m_waiting;
    WindowContext& m_context;
};

} // namespace yrw
