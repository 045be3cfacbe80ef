#include "store/SchemaUpgrade.h"

#include "platform/component/AutomationError.h"
#include "store/NotesTextIndex.h"
#include "store/Schema.h"

#include <QFileInfo>

#include <memory>

namespace yrw {

namespace {

/// A part of the schema that files of before version 1 may lack.
struct MissingPart {
    const char16_t* table;
    const char16_t* field; ///< nothing: the whole table
    const char* script;
};

constexpr MissingPart kPartsOfVersion1[] = {
    {u"tblNotes", u"ChangeUserCode",
     "ALTER TABLE tblNotes ADD COLUMN ChangeUserCode TEXT(255) COLLATE NOCASE"},
    {u"tblLinkedColumnDefs", u"Columns",
     "ALTER TABLE tblLinkedColumnDefs ADD COLUMN Columns LONGTEXT"},
    {u"tblSystem", u"FileOpenFilter", "ALTER TABLE tblSystem ADD COLUMN FileOpenFilter LONGTEXT"},
    {u"tblUserNames", nullptr,
     "CREATE TABLE tblUserNames (UserID INTEGER PRIMARY KEY, UserCode TEXT(255) COLLATE NOCASE, "
     "UseName TEXT(255) COLLATE NOCASE)"},
};

/// The view over notes as version 1 has it: with the stamp of the last change and the author.
constexpr const char* kNotesViewOfVersion1 =
    "DROP VIEW IF EXISTS qryNotes; CREATE VIEW qryNotes AS SELECT n.RecordID, n.Subject, "
    "n.RTFNote, "
    "n.PlainNote, n.Status, n.NoteType, n.AutomaticallyShow, n.OwnerComponentProgID, "
    "n.OwnerProgID, n.OwnerObjectKey, n.OwnerRecordID, n.RecordUserID, n.RecordUserCode, n.Date, "
    "n.ChangeDate, n.ChangeUserCode, n.ReminderType, n.ReminderDate, n.RecordID AS NoteID, "
    "coalesce(u.UseName, n.RecordUserCode) AS UseName FROM tblNotes AS n LEFT JOIN tblUserNames "
    "AS u ON u.UserID = n.RecordUserID";

bool isMissing(const dao::Database& database, const MissingPart& part) {
    const QString table = QString::fromUtf16(part.table);
    if (part.field == nullptr) {
        return !database.hasTable(table);
    }
    return database.hasTable(table) && !database.hasField(table, QString::fromUtf16(part.field));
}

void toVersion1(dao::Database& database) {
    for (const MissingPart& part : kPartsOfVersion1) {
        if (isMissing(database, part)) {
            database.RunScript(QString::fromLatin1(part.script));
        }
    }
    database.RunScript(QString::fromLatin1(kNotesViewOfVersion1));
}

void toVersion2(dao::Database& database) {
    notesTextIndex(Ref<dao::Database>(&database))->create();
}

void toVersion3(dao::Database& database) {
    if (!database.hasTable(schema::kTblImportedRows)) {
        database.RunScript(QStringLiteral(
            "CREATE TABLE tblImportedRows (RecordID INTEGER PRIMARY KEY, TableName TEXT(255), "
            "OldRecordID LONG, NewRecordID LONG, Origin TEXT(255), Contents TEXT(255))"));
    }
}

/// The step at position n leads from version n to n + 1.
constexpr void (*kSteps[])(dao::Database&) = {toVersion1, toVersion2, toVersion3};
static_assert(std::size(kSteps) == schema::kVersion, "every version has the step that leads to it");

/// Puts a copy beside the database under the first name that is free.
void copyBeside(dao::Database& database, const QString& name) {
    constexpr int kMostCopies = 1000;
    QString free = name;
    for (int number = 2; number <= kMostCopies; ++number) {
        const QFileInfo place(free);
        if (!place.exists() && !place.isSymLink()) {
            break;
        }
        free = name + u'-' + QString::number(number);
    }
    database.CopyTo(free);
}

/// Begins the transaction of the upgrade; nothing when another program has done it meanwhile.
std::unique_ptr<dao::Transaction> beginUpgrade(dao::Database& database) {
    // Another program that upgrades a large database holds the lock for longer than one wait.
    constexpr int kWaits = 12;
    std::unique_ptr<dao::Transaction> transaction;
    for (int wait = 1; !transaction && isOlderSchema(database.SchemaVersion()); ++wait) {
        try {
            transaction = std::make_unique<dao::Transaction>(database);
        } catch (const AutomationError& error) {
            if (error.number() != kErrorLocked || wait == kWaits) {
                throw;
            }
        }
    }
    // Asked again under the lock: another program may have been faster.
    if (transaction && !isOlderSchema(database.SchemaVersion())) {
        transaction.reset();
    }
    return transaction;
}

} // namespace

bool isOlderSchema(int version) {
    return version >= 0 && version < schema::kVersion;
}

void upgradeSchema(dao::Database& database) {
    const QString path = database.Name();
    if (database.isReadOnly()) {
        throw AutomationError(
            kErrorReadOnly, QStringLiteral("YRWNOTES.NotesDatabase"),
            QStringLiteral("%1 is of an older version and cannot be upgraded, because it is "
                           "read-only.")
                .arg(path));
    }
    const std::unique_ptr<dao::Transaction> transaction = beginUpgrade(database);
    if (!transaction) {
        return;
    }
    const int found = database.SchemaVersion();
    copyBeside(database, path + QStringLiteral(".schema%1").arg(found));
    for (int version = found; version < schema::kVersion; ++version) {
        kSteps[version](database);
        database.setSchemaVersion(version + 1);
    }
    transaction->commit();
}

} // namespace yrw
