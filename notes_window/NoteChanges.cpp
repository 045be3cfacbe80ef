#include "notes_window/NoteChanges.h"

#include "dialogs/Hourglass.h"
#include "dialogs/frmNoteProperties.h"
#include "notes_window/EditedNote.h"
#include "notes_window/NoteDrafts.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "notes_window/WaitingReminders.h"
#include "notes_window/WindowContext.h"
#include "platform/richtext/RichTextBox.h"

namespace yrw {

NoteChanges::NoteChanges(NotesList& list, EditedNote& edited, NoteDrafts& drafts, RichTextBox& text,
                         WaitingReminders& waiting, WindowContext& context)
    : m_list(list), m_edited(edited), m_drafts(drafts), m_text(text), m_waiting(waiting),
      m_context(context) {}

// Adding and editing.

void NoteChanges::add() {
    openProperties(nullptr);
}

void NoteChanges::EditNote() {
    m_context.report(QStringLiteral("EditNote"), QStringLiteral("Could not Run the Command"),
                     [this] {
                         if (m_edited.note() && !m_context.isReadOnly()) {
                             openProperties(m_edited.note());
                         }
                     });
}

void NoteChanges::openProperties(const Ref<Note>& note) {
    frmNoteProperties dialog(m_context.notes(), &m_context.window());
    Ref<Note> written; // by the last OK
    Ref<Note> stored;  // once all of it was
    const auto choicesOf = [](const QDateTime& date, const QString& subject, ReminderKind kind,
                              const QDateTime& due, bool autoShow, NoteType type) {
        return NoteChoices{date, subject, kind, due, autoShow, type};
    };
    const Connection added = dialog.AddNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<Note>& made, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_AddNote(made, choicesOf(date, subject, kind, due, autoShow, type));
            written = made;
        });
    const Connection edited = dialog.EditNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<Note>& changed, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_EditNote(changed, choicesOf(date, subject, kind, due, autoShow, type));
            written = changed;
        });
    const Connection reminded =
        dialog.AddReminder.connect([this](Ref<Note>& of, const QDateTime& due, qint64 userID) {
            mfrmProperties_AddReminder(of, due, userID);
        });
    dialog.setWriter([&](const std::function<void()>& raiseEvents) {
        m_edited.save(); // may ask something, so before anything is written
        storeAsOne(m_context.application(), raiseEvents);
        stored = written;
    });
    dialog.Initialise(m_context.parent(), note);
    dialog.showModal(&m_context.window());
    if (stored && note) {
        showChanged(stored);
    } else if (stored) {
        showAdded(stored);
    }
}

void NoteChanges::mfrmProperties_AddNote(Ref<Note>& note, const NoteChoices& choices) {
    m_context.showStatus(QStringLiteral("Addint new Note..."));
    StoreContext& store = m_context.notes();
    note = createNote(m_context.application(), store, ownerOf(m_list.owner(), store), choices);
}

void NoteChanges::mfrmProperties_EditNote(Ref<Note>& note, const NoteChoices& choices) {
    note = changeNote(m_context.application(), m_context.clock(), *note, choices);
}

void NoteChanges::mfrmProperties_AddReminder(const Ref<Note>& note, const QDateTime& due,
                                             qint64 userID) {
    addReminder(m_context.application(), m_context.clock(), *note, due, userID);
}

void NoteChanges::showAdded(const Ref<IRecord>& note) {
    m_list.replace(note);
    m_edited.show(note->keyAsRead(QStringLiteral("RecordID")).toLongLong());
    m_text.setFocus();
}

void NoteChanges::showChanged(const Ref<Note>& note) {
    if (m_edited.id() == note->keyAsRead(QStringLiteral("RecordID"))) {
        takeOverProperties(*m_edited.note(), *note);
    }
    m_list.replace(note);
}

// Deleting.

void NoteChanges::deleteSelected() {
    const QString item = m_list.view().selectedKey();
    if (item.isEmpty() ||
        m_context.prompt().question(
            QStringLiteral("Are you sure that you want to delete the selected note?"),
            QStringLiteral("Confirmation"), PromptButtons::YesNo, PromptIcon::Question,
            PromptAnswer::No) != PromptAnswer::Yes) {
        return;
    }
    const Hourglass hourglass(m_context.prompt());
    deleteStored(noteIdOf(item));
    m_edited.setAside();
    m_drafts.remove(noteIdOf(item));
    leave(item);
}

void NoteChanges::deleteStored(qint64 noteID) {
    try {
        deleteNote(m_context.application(), noteID,
                   m_edited.id() == noteID ? m_edited.note().get() : nullptr);
    } catch (const dao::ConflictError&) {
        if (!m_edited.isChanged()) {
            m_edited.show(noteID); // as it is now: who wants it deleted all the same has seen it
        }
        throw;
    }
}

void NoteChanges::leave(const QString& item) {
    m_edited.show(noteIdOf(m_list.removeItem(item)));
}

// States.

void NoteChanges::finishSelected() {
    const QString item = m_list.view().selectedKey();
    if (item.isEmpty() || !m_edited.note()) {
        return;
    }
    m_edited.save();
    {
        const Hourglass hourglass(m_context.prompt());
        m_context.showStatus(QStringLiteral("Changing note state..."));
        markDone(m_context.application(), *m_edited.note(), true);
    }
    m_context.prompt().message(QStringLiteral("This note has been flagged as done."),
                               QStringLiteral("Note Done"), PromptIcon::Information);
    leave(item);
    m_context.showStatus(QStringLiteral("Done"));
}

void NoteChanges::cancelSelectedReminders() {
    if (m_list.view().selectedKey().isEmpty() || !m_edited.note()) {
        return;
    }
    qint64 count = 0;
    {
        const Hourglass hourglass(m_context.prompt());
        m_context.showStatus(QStringLiteral("Canceling note reminder..."));
        count = cancelReminders(m_context.application(), *m_edited.note());
    }
    m_list.replace(m_edited.note());
    m_waiting.count();
    m_context.prompt().message(QString::number(count) +
                                   QStringLiteral(" reminder(s) were canceled."),
                               QStringLiteral("Cancel Reminders"), PromptIcon::Information);
    m_context.showStatus(QStringLiteral("Done"));
}

} // namespace yrw
