#pragma once

namespace yrw::dao {

/// A copy of a database under way, made page by page while this and other programs go on working.
///
/// It shows one state of the database, that of the first step; where the file is kept in rollback
/// mode, writers meanwhile make it begin again. It grows under a name of its own and gets the one
/// asked for when it is complete and on the disk, with mode and group of the original; rights of a
/// group that it cannot be given to are left out. It is copied page by page: no statement runs, and
/// nothing of an open transaction gets in.
///
/// Lifetime: an unfinished copy goes with the object. It has a connection of its own and needs the
/// database no more. Thread: the user-interface thread.
class OnlineBackup {
public:
    virtual ~OnlineBackup() = default;
    /// Goes on for about so long; true while there is more to do. Waits for nobody: what is locked
    /// is tried again by the next step. Raises `kErrorDiskFull`, `kErrorNotADatabase` for a damaged
    /// database, `kErrorCannotOpenDatabase` when the name was taken meanwhile.
    virtual bool step(int milliseconds) = 0;
    /// Does all that is left at once. Waits up to 5 seconds for a lock and then raises
    /// `kErrorLocked`; else as `step`.
    virtual void finish() = 0;
};

/// What becomes of a file that has the copy's name.
enum class ExistingCopy { Keep, Replace };

} // namespace yrw::dao
