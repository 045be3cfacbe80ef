#pragma once

#include "store/Application.h"

#include <QDateTime>

namespace yrw {

/// What the user chose for a note.
struct NoteChoices {
    QDateTime Date;
    QString Subject;
    ReminderKind Kind = ReminderKind::None;
    QDateTime ReminderDate; ///< invalid for none
    bool AutomaticallyShow = false;
    NoteType Type = NoteType::Public;
};

/// Who owns a note: a record of the host, or nobody (all empty).
struct NoteOwner {
    QString ComponentProgID; ///< program id of the host
    QString ProgID;          ///< program id of the record's class
    QString ObjectKey;
    qint64 RecordID = 0;
    [[nodiscard]] bool isNone() const { return ObjectKey.isEmpty(); }
};

/// The owner triple of a host record; none for nothing.
[[nodiscard]] NoteOwner ownerOf(const Ref<IRecord>& record, StoreContext& context);

/// Adds a note, by the current user, through the `Notes` collection; the new record.
Ref<Note> createNote(Application& application, StoreContext& context, const NoteOwner& owner,
                     const NoteChoices& choices);
/// Adds a reminder of a note to one user, due at `due`.
qint64 addReminder(Application& application, const Clock& clock, Note& note, const QDateTime& due,
                   qint64 userID);
/// Deletes a note's reminders and marks it as having none, in one transaction; how many there were.
qint64 cancelReminders(Application& application, Note& note);
/// Deletes a note with its reminders in one transaction.
void deleteNote(Application& application, qint64 noteID);

} // namespace yrw
