#pragma once

#include <QString>

namespace yrw::dao {

class SqliteFile;

/// Brings a file that may be written to the journal that its place calls for.
///
/// On a local disk that is the write-ahead journal. The kind of journal lies in the file, so one
/// host cannot decide for itself: the first that sees the file on a network mount leaves a mark in
/// it ("shared over a network") and turns it to the rollback journal; every host honours the mark.
/// Raises `kErrorLocked` when the file must be turned while another program has it open.
void settleJournal(const SqliteFile& file, bool onNetwork);

/// True when the file keeps a write-ahead journal. Reads nothing but the file's head.
[[nodiscard]] bool hasWriteAheadJournal(const SqliteFile& file);

/// True when the process's effective user may read, or write to, a file or folder.
[[nodiscard]] bool mayRead(const QString& path);
[[nodiscard]] bool mayWrite(const QString& path);

/// Who holds locks on a database file, as far as the system tells: "yrwhost (process 123)". Empty
/// when nobody is known. Processes that lock for writing go before those that only read.
[[nodiscard]] QString lockHolders(const QString& file);

} // namespace yrw::dao
