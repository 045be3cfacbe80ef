#pragma once

#include <QString>

namespace yrw {
class Clock;
}

namespace yrw::dao {

class Connection;
class SqliteFile;

// A journal belongs to the file that it was written for. A database therefore carries its own
// place (the table `tblFilePlace`), and a file that was put at the path by renaming, a restored
// copy for one, is told from the one that the journal beside it belongs to.

/// True when the database says that it was another file when it was written to last. What lies in
/// a journal is left out of the answer.
[[nodiscard]] bool isAtForeignPlace(const QString& file, Clock& clock);
/// Gives the side files of a database names that are free ("Notes.mdb-wal.old").
/// Raises `kErrorReadOnly` when they cannot be renamed.
void moveJournalAside(const QString& file);
/// Writes the file's place into it where it is not there or another. `toTheEnd` has it written
/// home, past the journal. Raises `kErrorLocked` when somebody prevents it.
void recordPlace(Connection& connection, const SqliteFile& file, bool toTheEnd);

} // namespace yrw::dao
