#pragma once

#include "store/Application.h"

#include <QDateTime>

#include <optional>

namespace yrw {

/// Where a note is kept: a kind of record of the host and the record's id.
struct OwnerKey {
    QVariant objectKey;
    QVariant recordID;
};
/// The conditions of the notes of one record.
[[nodiscard]] QStringList ownerConditions(const OwnerKey& owner);
/// The condition of the notes that are kept on no record.
[[nodiscard]] QString noOwnerCondition();
/// Where the note with that id is kept, an empty object key for one on no record; nothing when
/// there is no such note.
[[nodiscard]] std::optional<OwnerKey> ownerOfNote(const HostDataHelper& helper, qint64 noteID);
/// The active notes of one record of one host, front to back.
[[nodiscard]] Ref<dao::Recordset> openActiveNotes(const HostDataHelper& helper,
                                                  const QString& hostProgID, const OwnerKey& owner);
/// Those of them that are to be shown automatically, as they stand now.
[[nodiscard]] Ref<dao::Recordset>
openAutomaticNotes(const HostDataHelper& helper, const QString& hostProgID, const OwnerKey& owner);

/// A day and a time of it as people write them, also one that the clocks leave out.
struct WallMoment {
    QDate date;
    QTime time;
};
enum class NoteOrder { ByID, ByDate, ByOwner };
/// Which notes are read, and in which order; what is not given leaves none out.
struct NoteSelection {
    std::optional<OwnerKey> owner;
    bool onNoRecord = false; ///< only those
    std::optional<qint64> authorID;
    std::optional<NoteStatus> status;
    std::optional<WallMoment> from; ///< both ends are part of what is read
    std::optional<WallMoment> to;
    NoteOrder order = NoteOrder::ByID;
};
/// Reads notes front to back. Nobody holds them all in memory.
[[nodiscard]] Ref<dao::Recordset> openNotes(HostDataHelper& helper, const NoteSelection& selection);
/// Reads the reminders of a note, or all, front to back in the order in which they fall due.
[[nodiscard]] Ref<dao::Recordset> openReminders(HostDataHelper& helper,
                                                const std::optional<qint64>& noteID);
/// Reads notes by their ids, front to back. Many that stand close together are read in one go, with
/// the notes between them; ids without a note are left out. There is at least one id.
[[nodiscard]] Ref<dao::Recordset> openNotes(Notes& notes, const QVariantList& ids);
/// True when there is a note with that id.
[[nodiscard]] bool hasNote(Application& application, qint64 noteID);

/// What a note shows of its two texts: the rich one, or the plain one where there is no rich text
/// that begins like one.
[[nodiscard]] QString readableText(const QString& rich, const QString& plain);

} // namespace yrw
