#pragma once

#include <QString>

#include <optional>

namespace yrw {
class Clock;
}

namespace yrw::dao {

class Connection;

/// Which file a path leads to.
struct FilePlace {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 bornNs = 0; ///< when the file was made; 0 where the file system does not tell

    /// The same file as far as a running program can tell.
    [[nodiscard]] bool isSameOpenFile(const FilePlace& other) const noexcept {
        return device == other.device && inode == other.inode;
    }
};

/// The file at a path; nothing when there is none or it cannot be asked.
[[nodiscard]] std::optional<FilePlace> placeOf(const QString& file);
/// True when there is surely no file at a path.
[[nodiscard]] bool isGone(const QString& file);
/// True when a journal lies beside a database file.
[[nodiscard]] bool hasJournalBeside(const QString& file);
/// True when one lies there that holds anything: who has opened a file but not written yet keeps an
/// empty one.
[[nodiscard]] bool hasFullJournalBeside(const QString& file);

/// A journal belongs to the file that it was written for. A database therefore carries its own
/// place (the table `tblFilePlace`), and a file that was put at the path by renaming, a restored
/// copy for one, is told from the one that the journal beside it belongs to.

/// True when the database says that it was another file when it was written to last. What lies in
/// a journal is left out of the answer.
[[nodiscard]] bool isAtForeignPlace(const QString& file, Clock& clock);
/// Gives the side files of a database names that are free ("Notes.mdb-wal.old").
/// Raises `kErrorReadOnly` when they cannot be renamed.
void moveJournalAside(const QString& file);
/// Writes the file's place into it where it is not there or another. `toTheEnd` has it written
/// home, past the journal. Raises `kErrorLocked` when somebody prevents it.
void recordPlace(Connection& connection, const QString& file, bool toTheEnd);

} // namespace yrw::dao
