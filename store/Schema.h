#pragma once

#include <QString>

namespace yrw {

/// State of a note.
enum class NoteStatus : int { Active = 1, Done = 2 };

/// State of a reminder; a new one has none of the answered states.
enum class ReminderStatus : int { Open = 1, ClosedUnanswered = 2, ToldLater = 3, Dismissed = 4 };

/// Who is reminded of a note.
enum class ReminderKind : int { None = 0, Everyone = 1, Me = 2, SelectedUsers = 3, MyGroup = 4 };

/// Who a note is meant for. Any stored value but 2 reads as public.
enum class NoteType : int { Public = 1, Private = 2 };

/// Bits of `RecordsetRequest::CustomOptions` for notes. `Active` wins over `Done`.
enum NotesOption : int { kNotesActive = 1, kNotesDone = 2, kNotesMine = 8 };

namespace schema {

inline const QString kTblNotes = QStringLiteral("tblNotes");
inline const QString kTblReminders = QStringLiteral("tblReminders");
inline const QString kTblSystem = QStringLiteral("tblSystem");
inline const QString kTblSettings = QStringLiteral("tblSettings");
inline const QString kTblLinkedColumnDefs = QStringLiteral("tblLinkedColumnDefs");
inline const QString kTblUserNames = QStringLiteral("tblUserNames");
inline const QString kTblImportedRows = QStringLiteral("tblImportedRows");
inline const QString kQryNotes = QStringLiteral("qryNotes");
inline const QString kQryReminders = QStringLiteral("qryReminders");
inline const QString kQrySystem = QStringLiteral("qrySystem");
inline const QString kQryActiveReminders = QStringLiteral("qryActiveReminders");
inline const QString kSumCountNoteReminders = QStringLiteral("sumCountNoteReminders");
inline const QString kDelNoteByID = QStringLiteral("delNoteByID");
inline const QString kDelReminderByID = QStringLiteral("delReminderByID");
inline const QString kDelRemindersByNoteID = QStringLiteral("delRemindersByNoteID");
inline const QString kOwnerIndex =
    QStringLiteral("OwnerComponentProgID:OwnerObjectKey:OwnerRecordID:Status");

/// Number of the schema that this version reads and writes.
inline constexpr int kVersion = 3;
/// Longest text of a key, subject or name field, in characters.
inline constexpr int kMaxText = 255;
/// Colour of marked rows when none is stored, &H00BBGGRR: a light blue.
inline constexpr int kDefaultHighlight = 16761024;

} // namespace schema

} // namespace yrw
