#include "store/NotesDatabase.h"

#include "platform/component/AutomationError.h"
#include "platform/disk/Unfinished.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FolderLock.h"
#include "platform/files/StagedCopy.h"
#include "store/Schema.h"
#include "store/SchemaUpgrade.h"

#include <QHash>

#include <cerrno>

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRWNOTES.NotesDatabase");
const QString kUserID = QStringLiteral("UserID");
const QString kUserCode = QStringLiteral("UserCode");
const QString kUseName = QStringLiteral("UseName");

/// Files that the engine keeps beside a database while it works.
constexpr const char16_t* kSideFiles[] = {u"-wal", u"-shm", u"-journal"};

/// Raises unless the open database is a notes database of a schema that this version knows.
void checkSchema(dao::Database& database) {
    const QString name = database.Name();
    for (const QString& table : {schema::kTblNotes, schema::kTblReminders}) {
        if (!database.hasTable(table)) {
            throw AutomationError(
                kErrorNotADatabase, kSource,
                QStringLiteral("%1 is not a notes database: it has no table %2.").arg(name, table));
        }
    }
    const int version = database.SchemaVersion();
    if (version != schema::kVersion && !isOlderSchema(version)) {
        throw AutomationError(
            kErrorNewerSchema, kSource,
            QStringLiteral("%1 was made by a newer version of Yarrowen Notes (schema %2; this "
                           "version knows %3).")
                .arg(name)
                .arg(version)
                .arg(schema::kVersion));
    }
}

/// Gives a fresh database its name. Side files of an earlier one would bring its old rows in; they
/// are moved aside before, while no other process makes a database there.
template <class Place>
bool placeWithoutLeftOvers(const FileSystem& files, const QString& target, const Place& place) {
    const FolderLock lock(FileSystem::folderOf(target));
    for (const char16_t* suffix : kSideFiles) {
        if (files.fileExists(target)) {
            return false;
        }
        files.moveAside(target + QString::fromUtf16(suffix));
    }
    return place();
}

/// The first write has the data layer put the file's place into it. A file that has none yet should
/// have it before anybody makes a copy of it; one that has another's is known by that, and whoever
/// only reads need not wait for the disk.
void rememberPlace(const Ref<dao::Database>& database) {
    if (database->isReadOnly() || database->hasTable(QStringLiteral("tblFilePlace"))) {
        return;
    }
    const dao::BriefWaits brief(database);
    try {
        const dao::Transaction nothing(*database);
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLocked) {
            throw;
        }
    }
}

/// The users that the table lacks or knows otherwise. Who has left keeps the name: the notes stay.
QHash<qint64, UserName> userNamesToWrite(dao::Database& database, const QList<UserName>& users) {
    QHash<qint64, UserName> wanted;
    for (const UserName& user : users) {
        wanted.insert(user.UserID, user);
    }
    const Ref<dao::Recordset> rows = database.OpenRecordset(
        schema::kTblUserNames, dao::RecordsetType::Snapshot, dao::kReadOnlyOption);
    for (; !rows->AtEof(); rows->MoveNext()) {
        const auto found = wanted.constFind(rows->value(kUserID).toLongLong());
        if (found != wanted.constEnd() && rows->value(kUserCode) == found->UserCode &&
            rows->value(kUseName) == found->UseName) {
            wanted.erase(found);
        }
    }
    rows->Close();
    return wanted;
}

} // namespace

bool createNotesDatabase(const FileSystem& files, const QString& templateFolder,
                         const QString& targetFolder) {
    const QString source = FileSystem::join(templateFolder, kNotesDatabaseName);
    if (!files.fileExists(source)) {
        throw AutomationError(kErrorCannotOpenDatabase, kSource,
                              QStringLiteral("The template %1 is not there.").arg(source));
    }
    const QString target = files.resolve(FileSystem::join(targetFolder, kNotesDatabaseName));
    StagedCopy copy(files.resolve(source), target);
    if (!placeWithoutLeftOvers(files, target, [&] { return copy.place(); })) {
        return false;
    }
    FileSystem::takeGroupOfFolder(target);
    files.copyFolder(FileSystem::join(templateFolder, QStringLiteral("support/Notes")),
                     FileSystem::join(targetFolder, QStringLiteral("Support/Notes")));
    return true;
}

bool placeNotesDatabase(const FileSystem& files, const QString& complete, const QString& place) {
    return placeWithoutLeftOvers(files, place, [&] {
        if (!renameWithoutReplacing(complete, place)) {
            if (errno == EEXIST) {
                return false;
            }
            throw AutomationError(
                kErrorFileCopy, kSource,
                QStringLiteral("%1 could not be written: %2").arg(place, qt_error_string(errno)));
        }
        syncFolderOf(place);
        return true;
    });
}

Ref<dao::Database> openNotesDatabase(HostDataHelper& helper, const Ref<dao::Workspace>& workspace,
                                     const QString& path) {
    if (!workspace) {
        throw AutomationError(kErrorObjectRequired, kSource, QStringLiteral("Object required"));
    }
    Ref<dao::Database> database = workspace->OpenDatabase(path);
    try {
        checkSchema(*database);
        if (isOlderSchema(database->SchemaVersion())) {
            upgradeSchema(*database);
            checkSchema(*database);
        }
    } catch (...) {
        database->Close();
        throw;
    }
    rememberPlace(database);
    helper.setDatabase(database);
    return database;
}

void refreshUserNames(dao::Database& database, const QList<UserName>& users) {
    if (database.isReadOnly() || !database.hasTable(schema::kTblUserNames)) {
        return;
    }
    // Most openings find nothing to change and need no lock.
    if (userNamesToWrite(database, users).isEmpty()) {
        return;
    }
    const dao::BriefWaits brief((Ref<dao::Database>(&database)));
    dao::Transaction transaction(database);
    const QHash<qint64, UserName> changed = userNamesToWrite(database, users);
    const Ref<dao::Recordset> rows =
        database.OpenRecordset(schema::kTblUserNames, dao::RecordsetType::Table);
    for (const UserName& user : changed) {
        rows->Seek(u"=", {QVariant(user.UserID)});
        if (rows->NoMatch()) {
            rows->AddNew();
            rows->setValue(kUserID, user.UserID);
        } else {
            rows->Edit();
        }
        rows->setValue(kUserCode, user.UserCode);
        rows->setValue(kUseName, user.UseName);
        rows->Update();
    }
    rows->Close();
    transaction.commit();
}

QList<UserName> rememberedUsers(dao::Database& database) {
    QList<UserName> users;
    if (!database.hasTable(schema::kTblUserNames)) {
        return users;
    }
    const Ref<dao::Recordset> rows = database.OpenRecordset(
        schema::kTblUserNames, dao::RecordsetType::ForwardOnly, dao::kReadOnlyOption);
    for (; !rows->AtEof(); rows->MoveNext()) {
        users.append({rows->value(kUserID).toLongLong(), rows->value(kUserCode).toString(),
                      rows->value(kUseName).toString()});
    }
    rows->Close();
    return users;
}

QList<UserName> userNamesOf(const Ref<ICollection>& users) {
    QList<UserName> names;
    if (!users) {
        return names;
    }
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    const Ref<dao::Recordset> rows = users->Recordset(request);
    for (; !rows->AtEof(); rows->MoveNext()) {
        const auto text = [&](const QString& field) { // no longer than the notes database takes
            return rows->value(field).toString().left(schema::kMaxText);
        };
        names.append({rows->value(QStringLiteral("RecordID")).toLongLong(),
                      text(QStringLiteral("Code")), text(QStringLiteral("UseName"))});
    }
    rows->Close();
    return names;
}

QStringList hostsOfNotes(dao::Database& database) {
    const QString field = QStringLiteral("OwnerComponentProgID");
    QStringList found;
    QString last = QStringLiteral("");
    while (true) {
        // The index of owners leads from each to the next.
        const QString condition = QStringLiteral("[%1]>\"%2\"").arg(field, last);
        const Ref<dao::Recordset> row = database.OpenRecordset(
            QStringLiteral("SELECT tblNotes.* FROM tblNotes WHERE %1 ORDER BY [%2]")
                .arg(condition, field),
            dao::RecordsetType::ForwardOnly, dao::kReadOnlyOption);
        if (row->AtEof()) {
            return found;
        }
        last = row->value(field).toString();
        if (found.contains(last) || last.contains(u'"')) {
            return found; // no text that a condition can go on from
        }
        found += last;
    }
}

} // namespace yrw
