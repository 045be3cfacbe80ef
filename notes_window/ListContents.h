#pragma once

#include "notes_window/NotesList.h"

namespace yrw {

class EditedNote;
class ListFind;
class NoteTools;
class UserNames;
class WaitingReminders;
class WindowContext;

/// What the list shows: active, done or all notes, everybody's or the user's own. Reads it, selects
/// a note, and lets caption, tools and columns say what it is.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class ListContents {
public:
    ListContents(NotesList& list, EditedNote& edited, ListFind& find, NoteTools& tools,
                 UserNames& names, WaitingReminders& waiting, WindowContext& context);

    /// What the caption begins with whenever the list is read.
    void setTitle(const QString& title) { m_title = title; }
    /// Reads the list anew, as the tools say. Typed text is saved first; the same note stays
    /// selected, else the first is, and is shown unless `showsNote` is false. A failure is
    /// reported, and the list keeps what was read before it.
    void build(bool showsNote = true);
    /// Adds or removes the column of the users; true when only the user's own notes are shown.
    bool setUserColumn();
    void show(ShowType type);
    void showMineOnly(bool mine);

private:
    void refill(bool showsNote);
    void showCaption(ShowType type);
    void select(const QString& before, bool showsNote);

    NotesList& m_list;
    EditedNote& m_edited;
    ListFind& m_find;
    NoteTools& m_tools;
    UserNames& m_names;
    WaitingReminders& m_waiting;
    WindowContext& m_context;
    QString m_title;
};

} // namespace yrw
