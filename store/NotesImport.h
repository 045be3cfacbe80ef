#pragma once

#include "platform/component/WorkStep.h"
#include "platform/dao/Database.h"
#include "store/ImportChoices.h"
#include "store/ImportReport.h"

namespace yrw {

/// How an import ended.
enum class ImportEnd { Imported, Stopped };

/// Makes a notes database out of one of the older format, which is only read. Notes and reminders
/// keep their keys. The file appears under its name when it is complete and on the disk; nothing is
/// there of it when it was stopped or failed. A dry run makes it in a folder of its own and removes
/// it.
///
/// `step` is called some twenty times a second, or more often. `report` is filled meanwhile, so
/// that it can tell of rows; it is valid also after an error. Raises `kErrorCannotOpenDatabase`
/// when something of that name is there already or the old file cannot be opened,
/// `kErrorNotADatabase` with a sentence that names it when nothing can be read of it,
/// `kErrorDiskFull` before anything is written when the disk has too little space, and what writing
/// raises. Thread: the user-interface thread.
[[nodiscard]] ImportEnd importIntoNewFile(const QString& oldFile, const QString& newFile,
                                          const dao::EngineServices& services,
                                          const ImportChoices& choices, const WorkStep& step,
                                          ImportReport& report);

/// Adds the rows of a database of the older format to an open notes database, in one transaction,
/// under new keys. Rows of which the database remembers that they came from such a file before are
/// passed over, also when they were deleted since; reminders go with their notes. Settings that
/// the database has stay. A dry run writes nothing.
///
/// Otherwise as `importIntoNewFile`; raises also what locking raises, and `kErrorReadOnly`.
[[nodiscard]] ImportEnd mergeOldNotes(const QString& oldFile, dao::Database& into,
                                      const dao::EngineServices& services,
                                      const ImportChoices& choices, const WorkStep& step,
                                      ImportReport& report);

} // namespace yrw
