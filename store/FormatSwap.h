#pragma once

#include "platform/files/FileSystem.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace yrw {

/// Makes a new notes database of that name out of the old file. The new file appears when it is
/// complete and on the disk. What did not arrive, a line each; nothing when the user stopped it.
using MakeNotesFile =
    std::function<std::optional<QStringList>(const QString& oldFile, const QString& newFile)>;

/// What a conversion leaves beside the notes database.
struct ConvertedNotes {
    QString oldFile; ///< where the file of the older format is now
    QString report;  ///< a text that says what did not arrive; empty when everything did
};

/// Puts a notes database of this version in the place of one of the older format, which stays byte
/// for byte under another name.
///
/// The new file is made under a name of its own ("Notes.mdb.converted"). Then the old one is
/// renamed "Notes (old format).mdb", or to the next number where that name is taken, the report
/// gets its name beside it, and the new file takes the name `Notes.mdb`; each step is on the disk
/// before the next, and none replaces a file. Whatever ends the program in between, the folder
/// tells how far it came: `finish` goes on from there. Of several programs that convert, one does;
/// it holds "Notes.mdb.converting" meanwhile.
///
/// Lifetime: one block of code; the file system outlives it. Thread: any.
class FormatSwap {
public:
    /// Called some twenty times a second while another program is at it; false gives up.
    using Waiting = std::function<bool()>;
    enum class End { Converted, NothingOld, Stopped };

    FormatSwap(const FileSystem& files, const QString& folder);

    /// True when the notes database of the folder is of the older format. Not for a file that may
    /// be open in this process.
    [[nodiscard]] bool isOldFormat() const;
    /// The computers that the old format's own lock file names: one of their programs may have the
    /// notes database open, or have been ended with it open. Nothing where there is no such file.
    [[nodiscard]] std::optional<QStringList> openElsewhere() const;
    /// Completes a conversion that was ended between the old file's new name and the new file's,
    /// and removes what was left of one that had not come that far. What was completed; nothing
    /// where there was nothing to complete. Raises when that cannot be had.
    std::optional<ConvertedNotes> finish(const Waiting& waiting) const;
    /// Converts, after `finish`. `NothingOld` says that the file there is none of the older format
    /// any more. Raises what `make` raises, and a sentence when the files cannot be had or the old
    /// one was changed meanwhile; the old one then has its name and bytes, and nothing is beside
    /// it.
    [[nodiscard]] End convert(const MakeNotesFile& make, const Waiting& waiting,
                              ConvertedNotes& converted) const;

private:
    [[nodiscard]] QString place() const;
    std::optional<ConvertedNotes> settle() const;
    void removeLeftOvers() const;
    void makeReady(const QString& old, const QStringList& lost) const;
    [[nodiscard]] QString renameOld(const QString& old) const;
    [[nodiscard]] ConvertedNotes placeNew(const QString& oldFile) const;

    const FileSystem& m_files;
    QString m_folder;
    QString m_name;    ///< that the notes database has in the end
    QString m_working; ///< that it has before
    QString m_report;  ///< of the report before
    QString m_lock;
};

} // namespace yrw
