#pragma once

#include "store/Application.h"

namespace yrw {

/// Reads notes by their ids, front to back. Many that stand close together are read in one go, with
/// the notes between them; ids without a note are left out. There is at least one id.
[[nodiscard]] Ref<dao::Recordset> openNotes(Notes& notes, const QVariantList& ids);
/// True when there is a note with that id.
[[nodiscard]] bool hasNote(Application& application, qint64 noteID);

/// The reminders that a user has not dismissed and whose time has come, in the order of their
/// times: those of the active notes of one host and of the notes on no record. No user has none.
[[nodiscard]] Ref<dao::Recordset> dueReminders(HostDataHelper& helper, const QString& hostProgID,
                                               const QVariant& userID);

} // namespace yrw
