#include "store/Collections.h"

#include "platform/component/AutomationError.h"
#include "store/NoteReading.h"

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kNoteID = QStringLiteral("NoteID");
const QString kStatus = QStringLiteral("Status");

// What tells the three kinds of record apart. The error sources keep the spelling by which
// callers and logs know them.

const TableDifferences& noteTable() {
    static const TableDifferences table{
        .TableName = schema::kTblNotes,
        .QueryName = QStringLiteral("xn"),
        .ObjectKey = QStringLiteral("xn"),
        .CollectionName = QStringLiteral("Notes"),
        .ClassName = QStringLiteral("Notes"),
        .CommonFieldName = kNoteID,
        .ShortDisplayFieldName = QStringLiteral("Subject"),
        .KeyField = kRecordID,
        .StoredQuery = schema::kQryNotes,
        .DeleteQuery = schema::kDelNoteByID,
        .ItemSource = QStringLiteral("YRWNOTES.Notes.ICollection_Item"),
        .FieldSource = QStringLiteral("YRWNOTES.Note.IRecord_Field"),
        .UseName = {},
        .EmptiesPendingValues = true,
    };
    return table;
}

const TableDifferences& reminderTable() {
    static const TableDifferences table{
        .TableName = schema::kTblReminders,
        .QueryName = QStringLiteral("xr"),
        .ObjectKey = QStringLiteral("xr"),
        .CollectionName = QStringLiteral("Reminders"),
        .ClassName = QStringLiteral("Reminders"),
        .CommonFieldName = QStringLiteral("ReminderID"),
        .ShortDisplayFieldName = kRecordID,
        .KeyField = kRecordID,
        .StoredQuery = schema::kQryReminders,
        .DeleteQuery = schema::kDelReminderByID,
        .ItemSource = QStringLiteral("YRWNotes.Reminders.ICollection_Item"),
        .FieldSource = QStringLiteral("YRWNOTES.Reminder.IRecord_Field"),
        .UseName = {},
        .EmptiesPendingValues = true,
    };
    return table;
}

const TableDifferences& systemTable() {
    static const TableDifferences table{
        .TableName = schema::kTblSystem,
        .QueryName = schema::kQrySystem,
        .ObjectKey = QStringLiteral("zz"),
        .CollectionName = QStringLiteral("System Setting"),
        .ClassName = QStringLiteral("SystemSettings"),
        .CommonFieldName = {},
        .ShortDisplayFieldName = kRecordID,
        .KeyField = kRecordID,
        .StoredQuery = schema::kQrySystem,
        .DeleteQuery = {},
        .ItemSource = QStringLiteral("YRWNOTES.SystemSettings.ICollection_Item"),
        .FieldSource = QStringLiteral("YRWSETKIT.SystemSetting.IRecord_Field"),
        .UseName = {},
        .EmptiesPendingValues = false,
    };
    return table;
}

[[noreturn]] void raiseObjectRequired(const QString& source) {
    throw AutomationError(kErrorObjectRequired, source, QStringLiteral("Object required"));
}

/// The key of the user whom an application's session belongs to.
QVariant sessionUserID(const Ref<IApplication>& application) {
    const Ref<ISession> session = application ? application->Session() : nullptr;
    const Ref<IUser> user = session ? session->User() : nullptr;
    if (!user) {
        raiseObjectRequired(noteTable().ClassName);
    }
    return user->value(kRecordID);
}

Ref<ICollection> collectionOf(const Ref<IRecord>& record, const QString& source) {
    const Ref<ICollection> collection = record->Collection();
    if (!collection) {
        raiseObjectRequired(source);
    }
    return collection;
}

/// Notes on no record belong to the host that wrote them; those that name no host belong to the
/// one that is served.

QString servedHostCondition(const QString& hostProgID) {
    const QString field = QStringLiteral("OwnerComponentProgID");
    return QStringLiteral("(%1 OR %2 OR [%3] Is Null)")
        .arg(HostDataHelper::EqualCondition(field, hostProgID),
             HostDataHelper::EqualCondition(field, QStringLiteral("")), field);
}

} // namespace

Note::Note() : RecordBase(noteTable()) {}

Ref<yrw::Reminders> Note::Reminders() {
    Ref<yrw::Reminders> reminders = make<yrw::Reminders>();
    reminders->setApplication(Application());
    reminders->setParent(Ref<Counted>(this));
    return reminders;
}

Ref<IRecord> Note::Reminder(const QVariant& recordID) {
    return Reminders()->Item(recordID);
}

bool Note::Done() {
    return value(kStatus).toInt() == static_cast<int>(NoteStatus::Done);
}

void Note::setDone(bool done) {
    const NoteStatus status = done ? NoteStatus::Done : NoteStatus::Active;
    Field(kStatus)->setValue(static_cast<int>(status));
}

qint64 Note::NumberOfReminders() {
    const Ref<dao::Recordset> counts =
        dataHelper().OpenQuery(schema::kSumCountNoteReminders, {{kNoteID, valueAsRead(kNoteID)}});
    const qint64 count =
        counts->AtEof() ? 0 : counts->value(QStringLiteral("CountOfRecordID")).toLongLong();
    counts->Close();
    return count;
}

qint64 Note::DeleteReminders() {
    return dataHelper().RunActionQuery(schema::kDelRemindersByNoteID,
                                       {{kNoteID, valueAsRead(kRecordID)}});
}

Notes::Notes(StoreContext& context) : CollectionBase(noteTable()), m_context(context) {}

Ref<Note> Notes::note(const QVariant& recordID) {
    return query<Note>(Item(recordID));
}

Ref<IRecord> Notes::newRecord() const {
    return make<Note>();
}

QStringList Notes::conditions(const RecordsetRequest& request) const {
    QStringList texts;
    if (!request.RecordData.isValid()) {
        const Ref<IRecord> owner = query<IRecord>(Parent());
        if ((request.CustomOptions & kNotesMine) != 0) {
            const Ref<IApplication> application =
                owner ? Ref<IApplication>(m_context.hostApplication()) : Application();
            texts += HostDataHelper::EqualCondition(QStringLiteral("RecordUserID"),
                                                    sessionUserID(application));
        }
        if (owner) {
            texts += ownerConditions(
                {collectionOf(owner, ClassName())->ObjectKey(), owner->value(kRecordID)});
        } else {
            texts += servedHostCondition(m_context.hostProgID());
            texts += noOwnerCondition();
        }
    }
    if ((request.CustomOptions & kNotesActive) != 0) {
        texts += QStringLiteral("[Status]=1");
    } else if ((request.CustomOptions & kNotesDone) != 0) {
        texts += QStringLiteral("[Status]=2");
    }
    return texts;
}

Reminder::Reminder() : RecordBase(reminderTable()) {}

Reminders::Reminders() : CollectionBase(reminderTable()) {}

Ref<IRecord> Reminders::newRecord() const {
    return make<Reminder>();
}

QStringList Reminders::conditions(const RecordsetRequest& request) const {
    const Ref<IRecord> owner = query<IRecord>(Parent());
    if (request.RecordData.isValid() || !owner) {
        return {};
    }
    return {HostDataHelper::EqualCondition(collectionOf(owner, ClassName())->CommonFieldName(),
                                           owner->keyAsRead(kRecordID))};
}

SystemSetting::SystemSetting() : RecordBase(systemTable()) {}

SystemSettings::SystemSettings() : CollectionBase(systemTable()) {}

Ref<IRecord> SystemSettings::newRecord() const {
    return make<SystemSetting>();
}

} // namespace yrw
