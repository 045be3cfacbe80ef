#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/OnlineBackup.h"

#include <QDate>

namespace yrw {

/// The day's copy of the notes database, made in "Backups/Notes" beside it under the name "Notes
/// 2026-03-10.mdb" by the first program that comes; the seven newest are kept. A day that has its
/// copy, one that another program is just making, and a read-only database leave nothing to do.
///
/// It works in slices and can be dropped between any two: what is unfinished then goes.
/// Lifetime: does not keep the database. Thread: the user-interface thread.
class DailyCopy {
public:
    DailyCopy(const Ref<dao::Database>& database, const QDate& today);
    DailyCopy(const DailyCopy&) = delete;
    DailyCopy& operator=(const DailyCopy&) = delete;
    ~DailyCopy();

    /// Goes on for about so long; true while there is more to do. Raises what copying raises, and
    /// `kErrorFileWrite` when the folder cannot be made or is a link.
    bool step(int milliseconds);
    /// The copy, once this object has made it; else empty.
    [[nodiscard]] QString path() const { return m_isMade ? m_path : QString(); }

private:
    [[nodiscard]] bool lock();
    void unlock() noexcept;
    void removeLeftOvers() const;
    void removeOld() const;

    Ref<dao::Database> m_database; ///< until the first step
    QString m_folder;
    QString m_path;
    int m_lock = -1; ///< descriptor of the file whose lock says that a copy is being made
    bool m_hasBegun = false;
    bool m_isMade = false;
    std::unique_ptr<dao::OnlineBackup> m_backup;
};

} // namespace yrw
