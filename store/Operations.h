#pragma once

#include "store/Application.h"

#include <QDateTime>

#include <functional>
#include <optional>

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

/// A note's text in both forms; Null where there is none.
struct NoteText {
    QVariant rich; ///< RTF
    QVariant plain;
};
/// A text of which what is empty is Null.
[[nodiscard]] NoteText noteText(const QString& rich, const QString& plain);

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
/// Writes a note's text over the reading that it was made from, and the time of the change unless
/// that is invalid. A text that somebody else has written since raises `kErrorConflict`.
void storeText(Note& note, const NoteText& text, const QDateTime& changed);
/// Adds a reminder of a note to one user, due at `due`.
qint64 addReminder(Application& application, const Clock& clock, Note& note, const QDateTime& due,
                   qint64 userID);

// What follows writes in one transaction and takes the note as it stands by then, whatever others
// did to it since it was read. `shown` is the note as the user sees it; it takes over what was
// written once that is stored. A note that is gone raises `kErrorRecordNotFound`.

/// Runs what writes a note and its reminders: all of it is stored, or, when it raises, nothing.
/// No box may open in it.
void storeAsOne(IApplication& application, const std::function<void()>& write);
/// Adds a note with its text and a reminder to each recipient, due when the choices say.
Ref<Note> createWholeNote(Application& application, StoreContext& context, const NoteOwner& owner,
                          const NoteChoices& choices, const std::optional<NoteText>& text,
                          const QList<qint64>& recipients);
/// Writes what the user chose for a note and the time of the change; the note as it stands then.
/// What the user left as it was shown (subject, date, automatic show, type) is kept as others have
/// it by now. Part of what `storeAsOne` runs: `shown` is to take over the result afterwards.
Ref<Note> changeNote(Application& application, const Clock& clock, const Note& shown,
                     const NoteChoices& choices);
/// Takes over from a newer reading of the same note all but its text, with which typed text is
/// still to be compared.
void takeOverProperties(Note& shown, const Note& newer);
/// Finishes a note or makes it active again.
void markDone(Application& application, Note& shown, bool done);
/// Deletes a note's reminders and marks it as having none; how many there were.
qint64 cancelReminders(Application& application, Note& shown);
/// Deletes a note with its reminders; no error when it is gone already. With the note as the user
/// saw it, one whose subject or text somebody else has changed since raises `kErrorConflict` and
/// stays: nobody has agreed to lose that.
void deleteNote(Application& application, qint64 noteID, const Note* shown = nullptr);

} // namespace yrw
