// The commands on whole notes: add, edit, delete, done, cancel reminders.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/MultipleFieldUpdate.h"
#include "notes_window/NoteTexts.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <algorithm>

namespace yrw {

void frmMain::openProperties(const Ref<IRecord>& note) {
    frmNoteProperties dialog(this);
    const auto choicesOf = [](const QDateTime& date, const QString& subject, ReminderKind kind,
                              const QDateTime& due, bool autoShow, NoteType type) {
        return NoteChoices{date, subject, kind, due, autoShow, type};
    };
    const Connection added = dialog.AddNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<IRecord>& made, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_AddNote(made, choicesOf(date, subject, kind, due, autoShow, type));
        });
    const Connection edited = dialog.EditNote.connect(
        [&](const QDateTime& date, const QString& subject, Ref<IRecord>& changed, ReminderKind kind,
            const QDateTime& due, bool autoShow, NoteType type) {
            mfrmProperties_EditNote(changed, choicesOf(date, subject, kind, due, autoShow, type));
        });
    const Connection reminded =
        dialog.AddReminder.connect([this](Ref<IRecord>& of, const QDateTime& due, qint64 userID) {
            mfrmProperties_AddReminder(of, due, userID);
        });
    dialog.Initialise(Ref<INotesAddIn>(&m_addIn), note);
    dialog.showModal(this);
}

void frmMain::mfrmProperties_AddNote(Ref<IRecord>& note, const NoteChoices& choices) {
    SaveNote();
    ShowStatus(QStringLiteral("Addint new Note..."));
    const Hourglass hourglass(prompt());
    const Ref<Note> made =
        createNote(application(), m_context, ownerOf(m_owner, m_context), choices);
    note = made;
    const ListItem item = listItem(made);
    replaceItem(item);
    ShowNote(item.key);
    m_rtxMain->setFocus();
}

void frmMain::mfrmProperties_EditNote(Ref<IRecord>& note, const NoteChoices& choices) {
    const QVariant id = m_note->value(QStringLiteral("RecordID"));
    try {
        writeProperties(*m_note, choices);
    } catch (const AutomationError& error) {
        if (error.number() != kErrorConflict) {
            throw;
        }
        // Someone else changed the note meanwhile: write over a fresh reading, and keep the old
        // one as what the text is compared with.
        const Ref<Note> fresh = query<Note>(m_notes->Item(id));
        writeProperties(*fresh, choices);
        note = fresh;
    }
    replaceItem(listItem(note));
}

void frmMain::writeProperties(Note& note, const NoteChoices& choices) {
    MultipleFieldUpdate update(note);
    update.set(QStringLiteral("Subject"), choices.Subject);
    update.set(QStringLiteral("Date"), choices.Date);
    update.set(QStringLiteral("ChangeDate"), services().clock.now());
    update.set(QStringLiteral("ReminderType"), int(choices.Kind));
    update.set(QStringLiteral("AutomaticallyShow"), choices.AutomaticallyShow);
    update.set(QStringLiteral("NoteType"), int(choices.Type));
    update.set(QStringLiteral("ReminderDate"),
               choices.ReminderDate.isValid() ? QVariant(choices.ReminderDate) : QVariant());
    update.end();
}

void frmMain::mfrmProperties_AddReminder(const Ref<IRecord>& note, const QDateTime& due,
                                         qint64 userID) {
    addReminder(application(), services().clock, *query<Note>(note), due, userID);
}

void frmMain::lsvMain_DblClick() {
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.EditNote"),
                 QStringLiteral("Could not Run the Command"), QStringLiteral("Notes Problem"),
                 [this] {
                     if (m_note && !isReadOnlyDatabase()) {
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
    deleteNote(application(), noteIdOf(item));
    m_note.reset();
    setDirty(false);
    m_drafts.remove(noteIdOf(item));
    leaveItem(item);
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
        m_note->setDone(true);
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
        count = cancelReminders(application(), *m_note);
    }
    replaceItem(listItem(m_note));
    countWaitingReminders();
    prompt().message(QString::number(count) + QStringLiteral(" reminder(s) were canceled."),
                     QStringLiteral("Cancel Reminders"), PromptIcon::Information);
    ShowStatus(QStringLiteral("Done"));
}

} // namespace yrw
