#include "store/ReminderOperations.h"

#include "platform/clock/WallTime.h"
#include "platform/component/AutomationError.h"
#include "store/Operations.h"

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kNoteID = QStringLiteral("NoteID");
const QString kStatus = QStringLiteral("Status");
const QString kNextDate = QStringLiteral("NextDate");
const QString kLastDate = QStringLiteral("LastDate");

/// How early, in minutes, a reminder counts as due.
constexpr int kNumberOfMinutes = 1;
/// How many rows are looked up with one query.
constexpr qsizetype kKeysPerQuery = 200;

/// Reads the rows of a table or view with these keys.
template <class Take>
void readByKeys(const HostDataHelper& helper, const QString& query, const QSet<qint64>& ids,
                Take take) {
    QVariantList keys;
    for (const qint64 id : ids) {
        keys.append(id);
    }
    for (qsizetype first = 0; first < keys.size(); first += kKeysPerQuery) {
        const Ref<dao::Recordset> rows = helper.OpenRecordset(
            helper.BuildQuerySQL(query, keys.mid(first, kKeysPerQuery), kRecordID));
        for (; !rows->AtEof(); rows->MoveNext()) {
            take(*rows);
        }
        rows->Close();
    }
}

/// True while a reminder's row is what the record was read from.
bool isAsRead(IRecord& reminder, const dao::Recordset& row) {
    const auto isSameDate = [&](const QString& field) {
        return isSameWallTime(row.value(field).toDateTime(), reminder.value(field).toDateTime());
    };
    return row.value(kStatus) == reminder.value(kStatus) && isSameDate(kNextDate) &&
           isSameDate(kLastDate);
}

AnswerResult answer(IRecord& reminder, const dao::ValueList& values) {
    try {
        reminder.BeginMultipleFieldUpdate();
        reminder.MultipleUpdateFieldValues() = values;
        reminder.EndMultipleFieldUpdate();
        return AnswerResult::Stored;
    } catch (...) {
        const int number = currentError().number();
        if (number == kErrorConflict || number == kErrorRecordNotFound) {
            return AnswerResult::AnsweredElsewhere;
        }
        throw;
    }
}

} // namespace

Ref<dao::Recordset> openDueReminders(const HostDataHelper& helper, const QString& hostProgID,
                                     const QVariant& userID) {
    return helper.OpenQuery(schema::kQryActiveReminders,
                            {{QStringLiteral("ProgID"), hostProgID},
                             {QStringLiteral("NumberOfMinutes"), kNumberOfMinutes},
                             {QStringLiteral("UserID"), userID}});
}

std::deque<Ref<IRecord>> dueReminders(Application& application, const QString& hostProgID,
                                      const QVariant& userID,
                                      const std::function<bool(qint64)>& isWanted) {
    const Ref<Reminders> reminders = application.Reminders();
    const Ref<dao::Recordset> rows = openDueReminders(*application.DB(), hostProgID, userID);
    const FieldDictionaryPtr fields = HostDataHelper::BuildFieldDictionary(*rows);
    std::deque<Ref<IRecord>> due;
    while (!rows->AtEof()) {
        if (!isWanted(rows->value(kRecordID).toLongLong())) {
            rows->MoveNext();
            continue;
        }
        // Moves on to the next row.
        due.push_back(HostDataHelper::MakeRecord(fields, rows, reminders, make<Reminder>()));
        due.back()->setRecordset(nullptr);
    }
    rows->Close();
    return due;
}

QSet<qint64> unansweredReminders(Application& application, const std::vector<Ref<IRecord>>& shown) {
    QHash<qint64, Ref<IRecord>> byID;
    QSet<qint64> reminderIDs;
    QSet<qint64> noteIDs;
    for (const Ref<IRecord>& reminder : shown) {
        const qint64 id = reminder->value(kRecordID).toLongLong();
        byID.insert(id, reminder);
        reminderIDs.insert(id);
        noteIDs.insert(reminder->value(kNoteID).toLongLong());
    }
    const HostDataHelper& helper = *application.DB();
    QSet<qint64> active;
    readByKeys(helper, schema::kTblNotes, noteIDs, [&](const dao::Recordset& note) {
        if (note.value(kStatus).toInt() == static_cast<int>(NoteStatus::Active)) {
            active.insert(note.value(kRecordID).toLongLong());
        }
    });
    QSet<qint64> unanswered;
    readByKeys(helper, schema::kTblReminders, reminderIDs, [&](const dao::Recordset& row) {
        const qint64 id = row.value(kRecordID).toLongLong();
        if (active.contains(row.value(kNoteID).toLongLong()) && isAsRead(*byID.value(id), row)) {
            unanswered.insert(id);
        }
    });
    return unanswered;
}

AnswerResult dismissReminder(IRecord& reminder, const QDateTime& now) {
    return answer(reminder,
                  {{kLastDate, now}, {kStatus, static_cast<int>(ReminderStatus::Dismissed)}});
}

AnswerResult tellReminderLater(IRecord& reminder, const QDateTime& now, const QDateTime& later) {
    return answer(reminder, {{kNextDate, later},
                             {kLastDate, now},
                             {kStatus, static_cast<int>(ReminderStatus::ToldLater)}});
}

AnswerResult closeReminderUnanswered(IRecord& reminder, const QDateTime& now) {
    return answer(reminder, {{kNextDate, minutesLater(now, kUnansweredMinutes)},
                             {kStatus, static_cast<int>(ReminderStatus::ClosedUnanswered)}});
}

void finishNoteOf(IRecord& reminder, Application& application) {
    storeAsOne(application,
               [&] { application.Notes()->note(reminder.value(kNoteID))->setDone(true); });
}

} // namespace yrw
