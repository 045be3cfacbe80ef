#include "store/NotesImport.h"

#include "platform/disk/Unfinished.h"
#include "platform/jet/JetFile.h"
#include "store/DatabaseCheck.h"
#include "store/ImportRows.h"
#include "store/Schema.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRWNOTES.NotesImport");
constexpr qint64 kMiB = 1 << 20;

ImportEnd readInto(const QString& oldFile, dao::Database& target, Clock& clock,
                   const ImportChoices& choices, bool keepsKeys, const WorkStep& step,
                   ImportReport& report) {
    ImportRows rows(target, choices, keepsKeys, report);
    jet::JetReading reading{ImportRows::tables(), choices.codePage, clock};
    reading.reader = choices.reader;
    if (step) {
        reading.step = [&] { return step(rows.percent()); };
    }
    if (jet::readJetFile(oldFile, reading, rows) == jet::JetEnd::Stopped) {
        return ImportEnd::Stopped;
    }
    const bool hasNotes =
        std::any_of(report.tables.begin(), report.tables.end(),
                    [](const ImportedTable& table) { return table.name == schema::kTblNotes; });
    if (!hasNotes) {
        throw AutomationError(
            kErrorNotADatabase, kSource,
            QStringLiteral("%1 is no notes database: no table %2 can be found in it.")
                .arg(oldFile, schema::kTblNotes));
    }
    rows.finish();
    return ImportEnd::Imported;
}

/// Raises unless the folder of a file has room for the rows of another one. Texts take no more
/// than in the old file, and indexes and journal are less than half of it.
void requireRoom(const QString& oldFile, const QString& place) {
    const qint64 needed = QFileInfo(oldFile).size() * 3 / 2 + kMiB;
    const qint64 free = QStorageInfo(QFileInfo(place).absolutePath()).bytesAvailable();
    if (free >= 0 && free < needed) {
        throw AutomationError(kErrorDiskFull, kSource,
                              QStringLiteral("The import needs %1 MB in the folder of %2, and only "
                                             "%3 MB are free.")
                                  .arg(needed / kMiB + 1)
                                  .arg(place)
                                  .arg(free / kMiB));
    }
}

/// Imports into a file of that name, which is closed at the end.
ImportEnd fill(const QString& oldFile, const QString& path, dao::Workspace& workspace, Clock& clock,
               const ImportChoices& choices, const WorkStep& step, ImportReport& report) {
    const Ref<dao::Database> target = workspace.CreateDatabase(path);
    const auto close = qScopeGuard([&] { target->Close(); });
    target->RunScript(shippedScript());
    dao::Transaction transaction(*target);
    const ImportEnd end = readInto(oldFile, *target, clock, choices, true, step, report);
    if (end == ImportEnd::Imported && !choices.isDryRun) {
        transaction.commit();
    }
    return end;
}

[[noreturn]] void raiseTaken(const QString& path) {
    throw AutomationError(kErrorCannotOpenDatabase, kSource,
                          QStringLiteral("%1 is there already.").arg(path));
}

} // namespace

ImportEnd importIntoNewFile(const QString& oldFile, const QString& newFile,
                            const dao::EngineServices& services, const ImportChoices& choices,
                            const WorkStep& step, ImportReport& report) {
    const Ref<dao::Workspace> workspace = dao::createWorkspace(services);
    const QFileInfo place(newFile);
    if (place.exists() || place.isSymLink()) {
        raiseTaken(newFile);
    }
    if (choices.isDryRun) {
        const QTemporaryDir folder;
        return fill(oldFile, folder.filePath(kNotesDatabaseName), *workspace, services.clock,
                    choices, step, report);
    }
    requireRoom(oldFile, newFile);
    const QString unfinished = unfinishedName(newFile);
    const auto remove = qScopeGuard([&] { QFile::remove(unfinished); });
    const ImportEnd end =
        fill(oldFile, unfinished, *workspace, services.clock, choices, step, report);
    removeUnfinished(newFile, unfinished); // what killed programs left
    if (end == ImportEnd::Imported && !placeNotesDatabase(services.files, unfinished, newFile)) {
        raiseTaken(newFile);
    }
    return end;
}

ImportEnd mergeOldNotes(const QString& oldFile, dao::Database& into,
                        const dao::EngineServices& services, const ImportChoices& choices,
                        const WorkStep& step, ImportReport& report) {
    if (choices.isDryRun) {
        return readInto(oldFile, into, services.clock, choices, false, step, report);
    }
    requireRoom(oldFile, into.Name());
    dao::Transaction transaction(into);
    const ImportEnd end = readInto(oldFile, into, services.clock, choices, false, step, report);
    if (end == ImportEnd::Imported) {
        transaction.commit();
    }
    return end;
}

} // namespace yrw
