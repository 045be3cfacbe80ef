#pragma once

#include "store/Application.h"

#include <QDateTime>
#include <QSet>

#include <deque>
#include <functional>
#include <vector>

namespace yrw {

/// Minutes after which a reminder that was closed without an answer comes back.
inline constexpr qint64 kUnansweredMinutes = 15;

/// The reminders of one user that are due, or will be within a minute: those of active notes of one
/// host and of notes that name none, the oldest promise first. A row tells of its note, too.
[[nodiscard]] Ref<dao::Recordset>
openDueReminders(const HostDataHelper& helper, const QString& hostProgID, const QVariant& userID);
/// The same as records, of those ids that are wanted; each row is read once.
[[nodiscard]] std::deque<Ref<IRecord>> dueReminders(Application& application,
                                                    const QString& hostProgID,
                                                    const QVariant& userID,
                                                    const std::function<bool(qint64)>& isWanted);
/// The ids of those reminders that still are as they were read and whose notes are active: nobody
/// has answered them elsewhere, or finished or deleted what they are about.
[[nodiscard]] QSet<qint64> unansweredReminders(Application& application,
                                               const std::vector<Ref<IRecord>>& shown);

// What a user answers, one transaction each. Where somebody else has answered first, or the
// reminder is gone, that stands and nothing is written.

enum class AnswerResult { Stored, AnsweredElsewhere };

AnswerResult dismissReminder(IRecord& reminder, const QDateTime& now);
/// The reminder comes back at `later`.
AnswerResult tellReminderLater(IRecord& reminder, const QDateTime& now, const QDateTime& later);
/// The reminder was put away without an answer: it comes back after `kUnansweredMinutes`.
AnswerResult closeReminderUnanswered(IRecord& reminder, const QDateTime& now);
/// Finishes the note that a reminder is about. Raises `kErrorRecordNotFound` when it is gone.
void finishNoteOf(IRecord& reminder, Application& application);

} // namespace yrw
