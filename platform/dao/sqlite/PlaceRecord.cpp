#include "platform/dao/sqlite/PlaceRecord.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/SqliteFile.h"
#include "platform/dao/sqlite/Statement.h"
#include "platform/disk/Unfinished.h"

namespace yrw::dao {

namespace {

/// The index of the journal comes first: alone it would be believed.
constexpr const char16_t* kSideFiles[] = {u"-shm", u"-wal", u"-journal"};

/// The place that stands in the database, as the connection sees it.
std::optional<FilePlace> recordedPlace(const SqliteFile& file) {
    if (file.scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND "
                                   "name = 'tblFilePlace'"))
            .toInt() == 0) {
        return std::nullopt;
    }
    Statement row(file.handle(), QStringLiteral("SELECT Device, Inode, Born FROM tblFilePlace"),
                  SqlOrigin::Stored);
    if (!row.step()) {
        return std::nullopt;
    }
    return FilePlace{row.text(0).toULongLong(), row.text(1).toULongLong(),
                     row.text(2).toLongLong()};
}

void writePlace(Connection& connection, const FilePlace& place) {
    Writing writing(connection);
    connection.execute(QStringLiteral(
        "CREATE TABLE IF NOT EXISTS tblFilePlace (Device TEXT, Inode TEXT, Born TEXT)"));
    connection.execute(QStringLiteral("DELETE FROM tblFilePlace"));
    connection.execute(QStringLiteral("INSERT INTO tblFilePlace VALUES ('%1', '%2', '%3')")
                           .arg(place.device)
                           .arg(place.inode)
                           .arg(place.bornNs));
    writing.commit();
}

/// Numbers of devices change from one start of the machine to the next; a number of a file is given
/// again once the file is gone.
bool isOtherFile(const FilePlace& recorded, const FilePlace& now) {
    const bool bothBorn = recorded.bornNs != 0 && now.bornNs != 0;
    return recorded.inode != now.inode || (bothBorn && recorded.bornNs != now.bornNs);
}

} // namespace

bool isAtForeignPlace(const QString& file, Clock& clock) {
    const std::optional<FilePlace> now = placeOf(file);
    if (!now) {
        return false;
    }
    try {
        SqliteFile past(file, SqliteFile::Access::Immutable, clock);
        const std::optional<FilePlace> recorded = recordedPlace(past);
        return recorded && isOtherFile(*recorded, *now);
    } catch (const AutomationError&) {
        return false; // whoever opens it next finds words for that
    }
}

void moveJournalAside(const QString& file) {
    constexpr int kMostNames = 1000;
    for (const char16_t* suffix : kSideFiles) {
        const QString from = file + QString::fromUtf16(suffix);
        QString to = from + u".old";
        for (int number = 2; isThere(from) && !renameWithoutReplacing(from, to); ++number) {
            if (number > kMostNames || !isThere(to)) {
                throw AutomationError(kErrorReadOnly, QStringLiteral("YRW.Workspace"),
                                      QStringLiteral("%1 belongs to another file and cannot be "
                                                     "moved aside.")
                                          .arg(from));
            }
            to = from + u".old" + QString::number(number);
        }
    }
}

void recordPlace(Connection& connection, const SqliteFile& file, bool toTheEnd) {
    const std::optional<FilePlace> now = placeOf(file.path());
    const std::optional<FilePlace> recorded = recordedPlace(file);
    const bool isThereAlready =
        recorded && now && recorded->isSameOpenFile(*now) && !isOtherFile(*recorded, *now);
    if (!now || (isThereAlready && !toTheEnd)) {
        return;
    }
    if (!isThereAlready) {
        writePlace(connection, *now);
    }
    // Whoever opens the file next asks it without its journal.
    if (toTheEnd && file.scalar(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")).toInt() != 0) {
        throw AutomationError(kErrorLocked, QStringLiteral("YRW.Workspace"),
                              QStringLiteral("%1 is in use by another program. Try again when that "
                                             "program has finished.")
                                  .arg(file.path()));
    }
}

} // namespace yrw::dao
