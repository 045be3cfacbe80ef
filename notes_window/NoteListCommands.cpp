// The commands on whole notes: add, edit, delete, done, cancel reminders.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/NoteTexts.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <algorithm>

namespace yrw {

void frmMain::openProperties(const Ref<IRecord>& note) {
    frmNoteProperties dialog(this);
    Ref<IRecord> written; // by the last OK
    Ref<IRecord> stored;  // once all of it was
    const auto choicesOf = [](const QDateTime& date, const QString& subject, ReminderKind kind,
                              const QDateTime& due, bool autoShow, NoteType type) {
        return NoteChoices{date, subject, kind, due, autoShow, type};
    };
    const Connection added = dialog.AddNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<IRecord>& made, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_AddNote(made, choicesOf(date, subject, kind, due, autoShow, type));
            written = made;
        });
    const Connection edited = dialog.EditNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<IRecord>& changed, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_EditNote(changed, choicesOf(date, subject, kind, due, autoShow, type));
            written = changed;
        });
    const Connection reminded =
        dialog.AddReminder.connect([this](Ref<IRecord>& of, const QDateTime& due, qint64 userID) {
            mfrmProperties_AddReminder(of, due, userID);
        });
    dialog.setWriter([&](const std::function<void()>& raiseEvents) {
        SaveNote(); // may ask something, so before anything is written
        storeAsOne(m_context.application(), raiseEvents);
        stored = written;
    });
    dialog.Initialise(Ref<INotesAddIn>(&m_context.addIn()), note);
    dialog.showModal(this);
    if (stored && note) {
        showChanged(query<Note>(stored));
    } else if (stored) {
        showAdded(stored);
    }
}

void frmMain::mfrmProperties_AddNote(Ref<IRecord>& note, const NoteChoices& choices) {
    ShowStatus(QStringLiteral("Addint new Note..."));
    note = createNote(m_context.application(), m_context.store(),
                      ownerOf(m_owner, m_context.store()), choices);
}

void frmMain::mfrmProperties_EditNote(Ref<IRecord>& note, const NoteChoices& choices) {
    note = changeNote(m_context.application(), services().clock, *query<Note>(note), choices);
}

void frmMain::showAdded(const Ref<IRecord>& note) {
    showRow(note);
    ShowNote(m_lsvMain->selectedKey());
    m_rtxMain->setFocus();
}

void frmMain::showChanged(const Ref<Note>& note) {
    if (m_note && m_note->valueAsRead(QStringLiteral("RecordID")) ==
                      note->valueAsRead(QStringLiteral("RecordID"))) {
        takeOverProperties(*m_note, *note);
    }
    showRow(note);
}

void frmMain::mfrmProperties_AddReminder(const Ref<IRecord>& note, const QDateTime& due,
                                         qint64 userID) {
    addReminder(m_context.application(), services().clock, *query<Note>(note), due, userID);
}

void frmMain::lsvMain_DblClick() {
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.EditNote"),
                 QStringLiteral("Could not Run the Command"), QStringLiteral("Notes Problem"),
                 [this] {
                     if (m_note && !m_context.isReadOnly()) {
                         openProperties(m_note);
                     }
                 });
}

void frmMain::lsvMain_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Delete)) {
        key.consumed = true;
        m_atbMain->activate(QStringLiteral("tooDelete"));
    } else if (key.is(Qt::Key_Return) || key.is(Qt::Key_Enter)) {
        key.consumed = true;
        m_atbMain->activate(QStringLiteral("tooEdit"));
    }
}

void frmMain::lsvMain_MouseUp(const QPoint& globalPosition) {
    m_atbMain->popupAt(QStringLiteral("bndNotePopup"), globalPosition);
}

void frmMain::deleteSelected() {
    const QString item = m_lsvMain->selectedKey();
    if (item.isEmpty() ||
        prompt().question(QStringLiteral("Are you sure that you want to delete the selected note?"),
                          QStringLiteral("Confirmation"), PromptButtons::YesNo,
                          PromptIcon::Question, PromptAnswer::No) != PromptAnswer::Yes) {
        return;
    }
    const Hourglass hourglass(prompt());
    deleteShown(item);
    m_note.reset();
    setDirty(false);
    m_drafts.remove(noteIdOf(item));
    leaveItem(item);
}

void frmMain::deleteShown(const QString& item) {
    try {
        const bool isShown = m_note && keyOf(*m_note, QStringLiteral("RecordID")) == noteIdOf(item);
        deleteNote(m_context.application(), noteIdOf(item), isShown ? m_note.get() : nullptr);
    } catch (const dao::ConflictError&) {
        if (!m_dirty) {
            ShowNote(item); // as it is now: who wants it deleted all the same has seen it
        }
        throw;
    }
}

void frmMain::finishSelected() {
    const QString item = m_lsvMain->selectedKey();
    if (item.isEmpty() || !m_note) {
        return;
    }
    SaveNote();
    {
        const Hourglass hourglass(prompt());
        ShowStatus(QStringLiteral("Changing note state..."));
        markDone(m_context.application(), *m_note, true);
    }
    prompt().message(QStringLiteral("This note has been flagged as done."),
                     QStringLiteral("Note Done"), PromptIcon::Information);
    leaveItem(item);
    ShowStatus(QStringLiteral("Done"));
}

void frmMain::cancelSelectedReminders() {
    const QString item = m_lsvMain->selectedKey();
    if (item.isEmpty() || !m_note) {
        return;
    }
    qint64 count = 0;
    {
        const Hourglass hourglass(prompt());
        ShowStatus(QStringLiteral("Canceling note reminder..."));
        count = cancelReminders(m_context.application(), *m_note);
    }
    showRow(m_note);
    countWaitingReminders();
    prompt().message(QString::number(count) + QStringLiteral(" reminder(s) were canceled."),
                     QStringLiteral("Cancel Reminders"), PromptIcon::Information);
    ShowStatus(QStringLiteral("Done"));
}

} // namespace yrw
