#include "store/Operations.h"

#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"

#include <QScopeGuard>

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kSubject = QStringLiteral("Subject");
const QString kPlainNote = QStringLiteral("PlainNote");
const QString kRtfNote = QStringLiteral("RTFNote");

QVariant dateOrNull(const QDateTime& date) {
    return date.isValid() ? QVariant(date) : QVariant();
}

/// The open database of an application; kept for the length of a transaction.
Ref<dao::Database> openDatabaseOf(IApplication& application) {
    Ref<dao::Database> database = application.DAODatabase();
    if (!database) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.Application"),
                              QStringLiteral("The notes database is not open."));
    }
    return database;
}

/// The note that is shown, as it stands now.
Ref<Note> readAgain(Application& application, const Note& shown) {
    return application.Notes()->note(shown.valueAsRead(kRecordID));
}

void requireAsShown(Application& application, qint64 noteID, const Note& shown) {
    RecordsetRequest request;
    request.RecordData = noteID;
    const Ref<dao::Recordset> row = application.Notes()->Recordset(request);
    dao::ValueList changed;
    for (const QString& field : {kSubject, kPlainNote, kRtfNote}) {
        if (!row->AtEof() && row->value(field) != shown.valueAsRead(field)) {
            changed.set(field, row->value(field));
        }
    }
    row->Close();
    if (!changed.isEmpty()) {
        throw dao::ConflictError(
            QStringLiteral("YRWNOTES.Application"),
            QStringLiteral("Somebody else has changed the note meanwhile. It was not deleted."),
            changed);
    }
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

NoteText noteText(const QString& rich, const QString& plain) {
    return {rich.isEmpty() ? QVariant() : QVariant(rich),
            plain.isEmpty() ? QVariant() : QVariant(plain)};
}

void storeText(Note& note, const NoteText& text, const QDateTime& changed) {
    note.BeginMultipleFieldUpdate();
    const auto end = qScopeGuard([&note] {
        if (note.InMultipleUpdate()) {
            ignoreErrors([&note] { note.CancelMultipleFieldUpdate(); });
        }
    });
    dao::ValueList& values = note.MultipleUpdateFieldValues();
    values.set(kPlainNote, text.plain);
    values.set(kRtfNote, text.rich);
    if (changed.isValid()) {
        values.set(QStringLiteral("ChangeDate"), changed);
    }
    note.EndMultipleFieldUpdate();
}

qint64 addReminder(Application& application, const Clock& clock, Note& note, const QDateTime& due,
                   qint64 userID) {
    qint64 id = 0;
    application.Reminders()->Add({{QStringLiteral("NoteID"), note.valueAsRead(kRecordID)},
                                  {QStringLiteral("OriginalDate"), clock.now()},
                                  {QStringLiteral("NextDate"), dateOrNull(due)},
                                  {QStringLiteral("UserID"), userID}},
                                 nullptr, id, false);
    return id;
}

void storeAsOne(IApplication& application, const std::function<void()>& write) {
    const Ref<dao::Database> database = openDatabaseOf(application);
    dao::Transaction transaction(*database);
    write();
    transaction.commit();
}

Ref<Note> createWholeNote(Application& application, StoreContext& context, const NoteOwner& owner,
                          const NoteChoices& choices, const std::optional<NoteText>& text,
                          const QList<qint64>& recipients) {
    Ref<Note> note;
    storeAsOne(application, [&] {
        note = createNote(application, context, owner, choices);
        if (text) {
            storeText(*note, *text, context.clock().now());
        }
        for (const qint64 userID : recipients) {
            addReminder(application, context.clock(), *note, choices.ReminderDate, userID);
        }
    });
    return note;
}

Ref<Note> changeNote(Application& application, const Clock& clock, const Note& shown,
                     const NoteChoices& choices) {
    Ref<Note> note;
    storeAsOne(application, [&] {
        note = readAgain(application, shown);
        // The reminders are always those that the user chose.
        dao::ValueList values{
            {QStringLiteral("ChangeDate"), clock.now()},
            {QStringLiteral("ReminderType"), static_cast<int>(choices.Kind)},
            {QStringLiteral("ReminderDate"), dateOrNull(choices.ReminderDate)},
        };
        const dao::ValueList chosen{
            {kSubject, choices.Subject},
            {QStringLiteral("Date"), dateOrNull(choices.Date)},
            {QStringLiteral("AutomaticallyShow"), choices.AutomaticallyShow},
            {QStringLiteral("NoteType"), static_cast<int>(choices.Type)},
        };
        for (const dao::ValueList::Entry& entry : chosen) {
            if (shown.valueAsRead(entry.name) != entry.value) {
                values.set(entry.name, entry.value);
            }
        }
        application.DB()->UpdateRecord(*note, values);
    });
    return note;
}

void takeOverProperties(Note& shown, const Note& newer) {
    for (const dao::ValueList::Entry& entry : newer.valuesAsRead()) {
        if (entry.name != kPlainNote && entry.name != kRtfNote) {
            shown.noteWritten(entry.name, entry.value);
        }
    }
}

void markDone(Application& application, Note& shown, bool done) {
    Ref<Note> note;
    storeAsOne(application, [&] {
        note = readAgain(application, shown);
        note->setDone(done);
    });
    takeOverProperties(shown, *note);
}

qint64 cancelReminders(Application& application, Note& shown) {
    Ref<Note> note;
    qint64 count = 0;
    storeAsOne(application, [&] {
        note = readAgain(application, shown);
        count = note->DeleteReminders();
        application.DB()->UpdateRecord(
            *note, {{QStringLiteral("ReminderType"), static_cast<int>(ReminderKind::None)}});
    });
    takeOverProperties(shown, *note);
    return count;
}

void deleteNote(Application& application, qint64 noteID, const Note* shown) {
    storeAsOne(application, [&] {
        if (shown != nullptr) {
            requireAsShown(application, noteID, *shown);
        }
        application.DB()->RunActionQuery(schema::kDelRemindersByNoteID,
                                         {{QStringLiteral("NoteID"), noteID}});
        application.Notes()->Delete(noteID);
    });
}

} // namespace yrw
