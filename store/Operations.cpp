#include "store/Operations.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");

QVariant dateOrNull(const QDateTime& date) {
    return date.isValid() ? QVariant(date) : QVariant();
}

/// The open database of an application; kept for the length of a transaction.
Ref<dao::Database> openDatabaseOf(Application& application) {
    Ref<dao::Database> database = application.DAODatabase();
    if (!database) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.Application"),
                              QStringLiteral("The notes database is not open."));
    }
    return database;
}

} // namespace

NoteOwner ownerOf(const Ref<IRecord>& record, StoreContext& context) {
    NoteOwner owner;
    const Ref<ICollection> collection = record ? record->Collection() : nullptr;
    if (!collection) {
        return owner;
    }
    owner.ComponentProgID = context.hostProgID();
    owner.ObjectKey = collection->ObjectKey();
    owner.RecordID = record->value(kRecordID).toLongLong();
    const Ref<IHostApplication> host = context.hostApplication();
    const Ref<IObjectDefinition> definition =
        host ? host->ObjectDefinition(owner.ObjectKey) : nullptr;
    if (definition) {
        owner.ProgID = definition->ProgID();
    }
    return owner;
}

Ref<Note> createNote(Application& application, StoreContext& context, const NoteOwner& owner,
                     const NoteChoices& choices) {
    dao::ValueList data{
        // A note on no record is written without a host; whoever serves it reads it as its own.
        {QStringLiteral("OwnerComponentProgID"),
         owner.isNone() ? QStringLiteral("") : owner.ComponentProgID},
        {QStringLiteral("Date"), dateOrNull(choices.Date)},
        {QStringLiteral("Subject"), choices.Subject},
        {QStringLiteral("ReminderType"), static_cast<int>(choices.Kind)},
        {QStringLiteral("ReminderDate"), dateOrNull(choices.ReminderDate)},
        {QStringLiteral("AutomaticallyShow"), choices.AutomaticallyShow},
        {QStringLiteral("NoteType"), static_cast<int>(choices.Type)},
    };
    if (!owner.isNone()) {
        data.set(QStringLiteral("OwnerProgID"), owner.ProgID);
        data.set(QStringLiteral("OwnerObjectKey"), owner.ObjectKey);
        data.set(QStringLiteral("OwnerRecordID"), owner.RecordID);
    }
    if (const Ref<IUser> user = context.currentUser()) {
        data.set(QStringLiteral("RecordUserCode"), user->value(QStringLiteral("Code")));
    }
    qint64 id = 0;
    return query<Note>(application.Notes()->Add(data, nullptr, id, true));
}

qint64 addReminder(Application& application, const Clock& clock, Note& note, const QDateTime& due,
                   qint64 userID) {
    qint64 id = 0;
    application.Reminders()->Add({{QStringLiteral("NoteID"), note.value(kRecordID)},
                                  {QStringLiteral("OriginalDate"), clock.now()},
                                  {QStringLiteral("NextDate"), dateOrNull(due)},
                                  {QStringLiteral("UserID"), userID}},
                                 nullptr, id, false);
    return id;
}

qint64 cancelReminders(Application& application, Note& note) {
    const Ref<dao::Database> database = openDatabaseOf(application);
    dao::Transaction transaction(*database);
    const qint64 count = note.DeleteReminders();
    // Past a multiple-field update that may be open: cancelling is complete in itself.
    application.DB()->UpdateRecord(
        note, {{QStringLiteral("ReminderType"), static_cast<int>(ReminderKind::None)}});
    transaction.commit();
    return count;
}

void deleteNote(Application& application, qint64 noteID) {
    const Ref<dao::Database> database = openDatabaseOf(application);
    dao::Transaction transaction(*database);
    application.DB()->RunActionQuery(schema::kDelRemindersByNoteID,
                                     {{QStringLiteral("NoteID"), noteID}});
    application.Notes()->Delete(noteID);
    transaction.commit();
}

} // namespace yrw
