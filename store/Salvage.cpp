#include "store/Salvage.h"

#include "platform/disk/Unfinished.h"
#include "store/DatabaseCheck.h"
#include "store/NotesTextIndex.h"

#include <QFile>
#include <QFileInfo>

namespace yrw {

namespace {

QString freeName(const QString& path) {
    QString name = path;
    for (int number = 2; QFileInfo(name).exists() || QFileInfo(name).isSymLink(); ++number) {
        name = path + u'-' + QString::number(number);
    }
    return name;
}

/// Gives the target what the damaged file has beyond what ships: tables and fields.
void makeRoomFor(const dao::DamagedFile& file, const QString& table, dao::Database& target) {
    if (!target.hasTable(table)) {
        target.RunScript(file.tableSql(table));
        return;
    }
    for (const auto& [name, type] : file.columnsOf(table)) {
        if (!target.hasField(table, name)) {
            target.RunScript(
                QStringLiteral("ALTER TABLE \"%1\" ADD COLUMN \"%2\" %3").arg(table, name, type));
        }
    }
}

/// Rows that a new database begins with make room for those of the file.
void emptyTable(dao::Database& target, const QString& table) {
    target.RunScript(QStringLiteral("DELETE FROM \"%1\"").arg(table));
}

bool isPartOfSearch(const QString& table) {
    const dao::TextIndexNames& names = notesTextIndexNames();
    return table.startsWith(names.index) || table == names.waiting;
}

void copyTables(const dao::DamagedFile& file, dao::Database& target, SalvageResult& result) {
    dao::Transaction transaction(target);
    const QStringList tables = file.tableNames();
    for (const QString& table : tables) {
        if (isPartOfSearch(table)) {
            continue;
        }
        try {
            dao::Transaction one(target);
            makeRoomFor(file, table, target);
            emptyTable(target, table);
            result.tables.push_back(target.salvage(file, table));
            one.commit();
        } catch (const AutomationError& error) {
            if (error.number() == kErrorDiskFull || error.number() == kErrorLocked) {
                throw;
            }
            result.missing += table;
        }
    }
    transaction.commit();
}

/// What ships wins over what stands in a damaged file.
void putObjectsBack(const Ref<dao::Workspace>& workspace, const Ref<dao::Database>& target) {
    std::vector<Finding> findings = findObjectProblems(workspace, target);
    mendProblems(target, findings);
    const auto index = notesTextIndex(target);
    while (index->catchUp(1000)) {
    }
}

} // namespace

bool isDamagedNotesDatabase(dao::Workspace& workspace, const QString& path) {
    const auto file = workspace.openDamaged(path);
    return file && file->tableNames().contains(schema::kTblNotes);
}

SalvageResult salvageNotes(dao::Workspace& workspace, const QString& path) {
    const auto file = workspace.openDamaged(path);
    if (!file || !file->tableNames().contains(schema::kTblNotes)) {
        throw AutomationError(
            kErrorNotADatabase, QStringLiteral("YRWNOTES.NotesDatabase"),
            QStringLiteral("Nothing can be read of %1 any more. Restore it from a copy.")
                .arg(path));
    }
    SalvageResult result;
    result.path = freeName(path + QStringLiteral(".salvaged"));
    const QString unfinished = unfinishedName(result.path);
    const Ref<dao::Database> target = workspace.CreateDatabase(unfinished);
    removeUnfinished(result.path, unfinished);
    try {
        target->RunScript(shippedScript());
        copyTables(*file, *target, result);
        putObjectsBack(Ref<dao::Workspace>(&workspace), target);
        target->Close();
    } catch (...) {
        target->Close();
        QFile::remove(unfinished);
        throw;
    }
    if (!QFile::rename(unfinished, result.path)) {
        throw AutomationError(kErrorDiskFull, QStringLiteral("YRWNOTES.NotesDatabase"),
                              QStringLiteral("%1 could not be written.").arg(result.path));
    }
    return result;
}

} // namespace yrw
