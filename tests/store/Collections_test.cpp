#include "tests/support/NotesFixture.h"
#include "tests/support/Raised.h"

namespace yrw::test {
namespace {

const QString kSubject = QStringLiteral("Subject");
const QString kStatus = QStringLiteral("Status");
const QString kRecordID = QStringLiteral("RecordID");

using CollectionsTest = NotesFixture;

QStringList subjects(Notes& notes, int options = 0) {
    RecordsetRequest request;
    request.CustomOptions = options;
    request.Sort = QStringLiteral("[RecordID]");
    const Ref<dao::Recordset> rows = notes.Recordset(request);
    QStringList found;
    for (; !rows->AtEof(); rows->MoveNext()) {
        found += rows->value(kSubject).toString();
    }
    return found;
}

TEST_F(CollectionsTest, TheThreePairsDifferByTheirTableAndTheSourcesOfTheirErrors) {
    Application& application = store.application();
    addReminder(application, store.manualClock(), *store.addNote(QStringLiteral("a")), {}, 1);
    const struct {
        Ref<ICollection> collection;
        const char *table, *query, *key, *name, *className, *common, *display;
        const char *itemSource, *fieldSource;
    } cases[] = {
        {application.Notes(), "tblNotes", "xn", "xn", "Notes", "Notes", "NoteID", "Subject",
         "YRWNOTES.Notes.ICollection_Item", "YRWNOTES.Note.IRecord_Field"},
        {application.Reminders(), "tblReminders", "xr", "xr", "Reminders", "Reminders",
         "ReminderID", "RecordID", "YRWNotes.Reminders.ICollection_Item",
         "YRWNOTES.Reminder.IRecord_Field"},
        {application.SystemSettings(), "tblSystem", "qrySystem", "zz", "System Setting",
         "SystemSettings", "", "RecordID", "YRWNOTES.SystemSettings.ICollection_Item",
         "YRWSETKIT.SystemSetting.IRecord_Field"},
    };
    for (const auto& c : cases) {
        ICollection& collection = *c.collection;
        EXPECT_EQ(collection.TableName(), QLatin1String(c.table));
        EXPECT_EQ(collection.QueryName(), QLatin1String(c.query));
        EXPECT_EQ(collection.ObjectKey(), QLatin1String(c.key));
        EXPECT_EQ(collection.CollectionName(), QLatin1String(c.name));
        EXPECT_EQ(collection.ClassName(), QLatin1String(c.className));
        EXPECT_EQ(collection.CommonFieldName(), QLatin1String(c.common));
        EXPECT_EQ(collection.ShortDisplayFieldName(), QLatin1String(c.display));
        EXPECT_EQ(collection.KeyField(), kRecordID);
        EXPECT_EQ(raisedBy([&] { (void)collection.Count(); }).number(), kErrorObjectRequired);
        collection.setShowFields(QStringList{kSubject});
        EXPECT_FALSE(collection.ShowFields().isValid());
        EXPECT_EQ(collection.Application(), Ref<IApplication>(&application));
        EXPECT_EQ(collection.Parent(), Ref<Counted>(&application));

        const Ref<IRecord> record = collection.Item(QVariant(1));
        const AutomationError field =
            raisedBy([&] { (void)record->Field(QStringLiteral("Nonsense")); });
        EXPECT_EQ(field.number(), kErrorFieldNotFound);
        EXPECT_EQ(field.source(), QLatin1String(c.fieldSource));
        EXPECT_EQ(field.description(), QStringLiteral("Field Nonsense does not exist."));
        collection.Delete(QVariant(1)); // of the settings there is then none at all
        const AutomationError item = raisedBy([&] { (void)collection.Item(QVariant(77)); });
        EXPECT_EQ(item.number(), kErrorRecordNotFound);
        EXPECT_EQ(item.source(), QLatin1String(c.itemSource));
        EXPECT_EQ(item.description(), QStringLiteral("Record : 77 was not found"));
    }
}

TEST_F(CollectionsTest, ItemOfARecordsetMovesItOnAndNeverClosesIt) {
    store.addNote(QStringLiteral("a"));
    store.addNote(QStringLiteral("b"));
    const Ref<Notes> notes = store.application().Notes();
    const Ref<dao::Recordset> rows = notes->Recordset({});
    const Ref<IRecord> first = notes->Item(rows);
    EXPECT_EQ(first->value(kSubject), QStringLiteral("a"));
    EXPECT_EQ(rows->value(kSubject), QStringLiteral("b"));
    rows->setBookmark(first->Bookmark());
    EXPECT_EQ(rows->value(kSubject), QStringLiteral("a"));
    rows->MoveNext();
    (void)notes->Item(rows);
    EXPECT_EQ(raisedBy([&] { (void)notes->Item(rows); }).number(), kErrorRecordNotFound);
    EXPECT_TRUE(rows->isOpen());
    rows->Close();
    EXPECT_EQ(first->value(kSubject), QStringLiteral("a")) << "a record outlives its recordset";
}

TEST_F(CollectionsTest, AddGivesTheRecordAsTheCallerAsks) {
    const Ref<Notes> notes = store.application().Notes();
    qint64 id = 0;
    const Ref<IRecord> detached = notes->Add({{kSubject, QStringLiteral("a")}}, nullptr, id, false);
    EXPECT_EQ(detached->value(QStringLiteral("NoteID")).toLongLong(), id);
    EXPECT_EQ(detached->value(QStringLiteral("UseName")), QStringLiteral("Anna Ash"));
    EXPECT_EQ(detached->value(QStringLiteral("RecordUserID")), 1);
    EXPECT_EQ(detached->value(kStatus), 1);
    EXPECT_EQ(detached->Recordset(), nullptr);

    const Ref<dao::Recordset> rows = notes->Recordset({});
    qint64 second = 0;
    const Ref<IRecord> empty = notes->Add({{kSubject, QStringLiteral("b")}}, rows, second, false);
    EXPECT_EQ(empty->Fields(), nullptr);
    EXPECT_EQ(rows->value(kSubject), QStringLiteral("b"));
    const Ref<IRecord> read = notes->Add({{kSubject, QStringLiteral("c")}}, rows, second, true);
    EXPECT_EQ(read->value(kRecordID).toLongLong(), second);
    EXPECT_EQ(rows->value(kSubject), QStringLiteral("c"));
    EXPECT_EQ(read->Recordset(), rows);
    EXPECT_EQ(notes->Add({{"RecordUserID", 2}}, rows, second, true)->value("RecordUserID"), 2);
    EXPECT_THROW(notes->Add({{"Nonsense", 1}}, rows, second, true), AutomationError);
    EXPECT_FALSE(rows->EditInProgress());
    const dao::Bookmark last = rows->Bookmark();
    rows->MoveFirst();
    EXPECT_TRUE(notes->Delete({}, rows, last));
    EXPECT_EQ(notes->NewEnum().front()->value(kSubject), "a");

    const AutomationError error = raisedBy([&] {
        notes->Add({{QStringLiteral("Nonsense"), 1}}, nullptr, id, false);
    });
    EXPECT_EQ(error.number(), kErrorNotInCollection);
    EXPECT_EQ(notes->NewEnum().size(), 3U);
}

/// A collection whose key has another name, over what its rows are read from.
class NamesByUserID final : public CollectionBase {
public:
    explicit NamesByUserID(const TableDifferences& table) : CollectionBase(table) {}

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override {
        return make<RecordBase>(differences());
    }
};

TEST_F(CollectionsTest, AddTakesTheKeyByItsNameOrAddsNothing) {
    store.database()->RunScript(QStringLiteral(
        "CREATE VIEW qryNobody AS SELECT UserID, UseName FROM tblUserNames WHERE UserID < 0"));
    const QString key = QStringLiteral("UserID");
    const dao::ValueList data{{key, 77}, {QStringLiteral("UseName"), QStringLiteral("Zoe")}};
    const auto readFrom = [&](const QString& query) {
        return TableDifferences{.TableName = schema::kTblUserNames,
                                .ClassName = QStringLiteral("Names"),
                                .ShortDisplayFieldName = key,
                                .KeyField = key,
                                .StoredQuery = query};
    };
    const auto rowsOfZoe = [&] {
        return store.database()
            ->OpenRecordset(QStringLiteral("SELECT * FROM tblUserNames WHERE [UserID]=77"))
            ->RecordCount();
    };
    const TableDifferences byTable = readFrom(schema::kTblUserNames);
    const TableDifferences byQuery = readFrom(QStringLiteral("qryNobody"));
    const Ref<dao::Recordset> withoutKey =
        store.database()->OpenRecordset(QStringLiteral("SELECT UseName FROM tblUserNames"));
    const struct {
        const TableDifferences& table;
        Ref<dao::Recordset> rows;
        int error;
    } cases[] = {
        {byQuery, nullptr, kErrorRecordNotFound}, // the new row cannot be read back
        {byTable, withoutKey, kErrorNotInCollection},
        {byTable, nullptr, 0},
    };
    for (const auto& c : cases) {
        const Ref<NamesByUserID> names = make<NamesByUserID>(c.table);
        names->setApplication(store.applicationRef());
        qint64 id = 0;
        if (c.error != 0) {
            EXPECT_EQ(raisedBy([&] { names->Add(data, c.rows, id, true); }).number(), c.error);
            EXPECT_EQ(rowsOfZoe(), 0);
            EXPECT_EQ(id, 0);
        } else {
            EXPECT_EQ(names->Add(data, c.rows, id, true)->value(QStringLiteral("UseName")),
                      QStringLiteral("Zoe"));
            EXPECT_EQ(id, 77);
            EXPECT_EQ(rowsOfZoe(), 1);
        }
    }
}

TEST_F(CollectionsTest, NotesAreThoseOfTheParent) {
    const Ref<IRecord> customer = store.hostRecord(QStringLiteral("cu"), 1);
    store.addNote(QStringLiteral("customer"), customer);
    store.addNote(QStringLiteral("order"), store.hostRecord(QStringLiteral("or"), 1));
    store.addNote(QStringLiteral("system"));
    store.actAs(2);
    store.addNote(QStringLiteral("by Ben"), customer)->setDone(true);

    const struct {
        int options;
        QStringList expected;
    } cases[] = {
        {0, {QStringLiteral("customer"), QStringLiteral("by Ben")}},
        {kNotesActive, {QStringLiteral("customer")}},
        {kNotesDone, {QStringLiteral("by Ben")}},
        {kNotesActive | kNotesDone, {QStringLiteral("customer")}},
        {kNotesMine, {QStringLiteral("by Ben")}},
        {kNotesMine | kNotesActive, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(subjects(*store.notesOf(customer), c.options), c.expected) << c.options;
    }
    EXPECT_EQ(subjects(*store.application().Notes()), QStringList(QStringLiteral("system")));
}

TEST_F(CollectionsTest, NotesOnNoRecordOfNoHostCountAsTheServingHosts) {
    const Ref<Notes> notes = store.application().Notes();
    const QString owner = QStringLiteral("OwnerComponentProgID");
    qint64 id = 0;
    notes->Add({{kSubject, QStringLiteral("empty")}, {owner, QStringLiteral("")}}, nullptr, id,
               false);
    notes->Add({{kSubject, QStringLiteral("null")}}, nullptr, id, false);
    notes->Add({{kSubject, QStringLiteral("own")}, {owner, kFakeHostProgID}}, nullptr, id, false);
    notes->Add({{kSubject, QStringLiteral("other")}, {owner, QStringLiteral("Other.Application")}},
               nullptr, id, false);
    EXPECT_EQ(subjects(*notes), (QStringList{QStringLiteral("empty"), QStringLiteral("null"),
                                             QStringLiteral("own")}));
    EXPECT_EQ(subjects(*notes, kNotesActive).size(), 3) << "the status must not be or-ed away";
}

TEST_F(CollectionsTest, KeysSortsAndFilters) {
    const Ref<IRecord> customer = store.hostRecord(QStringLiteral("cu"), 1);
    for (const char* subject : {"b", "a", "c"}) {
        store.addNote(QLatin1String(subject), customer);
    }
    const Ref<Notes> notes = store.notesOf(customer);
    RecordsetRequest request;
    request.Sort = QStringLiteral("[Subject] DESC");
    request.Filter = QStringLiteral("[Subject]=\"a\" OR [Subject]=\"c\"");
    request.CustomOptions = kNotesDone;
    EXPECT_TRUE(notes->Recordset(request)->AtEof()) << "a filter with OR stays one condition";
    request.CustomOptions = kNotesActive;
    EXPECT_EQ(notes->Recordset(request)->value(kSubject), QStringLiteral("c"));
    const Ref<dao::Recordset> ordered =
        store.dataHelper().OpenRecordset("SELECT * FROM tblNotes ORDER BY [Status]", request);
    EXPECT_EQ(ordered->value(kSubject), "c") << "a second order comes behind the first";
    request = {};
    request.RecordData = QVariantList{1, 3};
    EXPECT_EQ(notes->Recordset(request)->RecordCount(), 2);
    request.RecordData = 3;
    EXPECT_EQ(notes->Recordset(request)->value(kSubject), QStringLiteral("c"));
    request.RecordData = QVariantList();
    EXPECT_TRUE(notes->Recordset(request)->AtEof()) << "no keys are no condition for all";
    request.RecordData = QStringLiteral("1\" OR [Status]=\"1");
    EXPECT_TRUE(notes->Recordset(request)->AtEof()) << "a value is never a condition";
    request.RecordData = QStringLiteral("1\" OR '[Status]=\"1");
    EXPECT_THROW((void)notes->Recordset(request), AutomationError);
}

TEST_F(CollectionsTest, AnySystemSettingIsTheFirst) {
    const Ref<ICollection> settings = store.application().SystemSettings();
    const Ref<IRecord> first = settings->Item(QVariant(99));
    EXPECT_EQ(first->value(kRecordID), 1);
    EXPECT_EQ(first->ShortDisplayValue()->Value(), 1);
    first->Field(QStringLiteral("FileOpenFilter"))->setValue(QStringLiteral("All|*.*|"));
    EXPECT_EQ(settings->Item(QVariant(0))->value(QStringLiteral("FileOpenFilter")),
              QStringLiteral("All|*.*|"));
}

TEST_F(CollectionsTest, ANoteCountsAndDeletesItsReminders) {
    const Ref<Note> note = store.addNote(QStringLiteral("a"));
    const Ref<Note> other = store.addNote(QStringLiteral("b"));
    EXPECT_EQ(note->NumberOfReminders(), 0);
    const QDateTime due = store.manualClock().now().addSecs(3600);
    const qint64 first = addReminder(store.application(), store.manualClock(), *note, due, 1);
    addReminder(store.application(), store.manualClock(), *note, due, 2);
    addReminder(store.application(), store.manualClock(), *other, due, 1);
    EXPECT_EQ(note->NumberOfReminders(), 2);
    EXPECT_EQ(note->Reminders()->NewEnum().size(), 2U);
    EXPECT_EQ(note->Reminder(first)->value(QStringLiteral("NextDate")), due);
    EXPECT_EQ(note->Reminder(first)->value(kSubject), QStringLiteral("a"));
    EXPECT_EQ(store.application().Reminders()->NewEnum().size(), 3U);
    EXPECT_EQ(note->DeleteReminders(), 2);
    EXPECT_EQ(note->DeleteReminders(), 0);
    addReminder(store.application(), store.manualClock(), *note, due, 1);
    deleteNote(store.application(), note->value(kRecordID).toLongLong());
    EXPECT_EQ(store.application().Notes()->NewEnum().size(), 1U);
    EXPECT_EQ(store.application().Reminders()->NewEnum().size(), 1U);
    EXPECT_EQ(other->NumberOfReminders(), 1);
}

} // namespace
} // namespace yrw::test
