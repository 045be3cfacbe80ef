#pragma once

#include <QtGlobal>

namespace yrw::dao {

/// Somebody who watches a write that waits because another program has the file locked.
///
/// Lifetime: outlives the databases that it is set for, or is taken from them before it ends.
/// Thread: the user-interface thread.
class LockWatch {
public:
    virtual ~LockWatch();
    /// Called again and again, with the milliseconds since the first try. Waits a little, and may
    /// handle events meanwhile: the database can be read, written and even closed. False gives up.
    virtual bool goOn(qint64 waitedMs) = 0;
    /// The wait is over.
    virtual void ended() noexcept = 0;
};

} // namespace yrw::dao
