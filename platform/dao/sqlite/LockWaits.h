#pragma once

#include <QtGlobal>

struct sqlite3;

namespace yrw {
class Clock;
}

namespace yrw::dao {

/// How long a connection waits for a lock that somebody else holds.
///
/// Lifetime: as long as its connection, and at the same address. Thread: the user-interface thread.
class LockWaits {
public:
    static constexpr int kUsualMs = 5000;
    /// With somebody watching at a window, who must not sit before a frozen one.
    static constexpr int kWatchedMs = 1000;
    static constexpr int kBriefMs = 50;

    explicit LockWaits(Clock& clock) : m_clock(clock) {}
    LockWaits(const LockWaits&) = delete;
    LockWaits& operator=(const LockWaits&) = delete;

    /// Makes a connection wait by this.
    void serve(sqlite3* connection) noexcept;
    /// Sets how long is waited, 0 for not at all; returns what was set before. Who waits briefly
    /// and gave up once does not wait again for half a second.
    int setPatience(int milliseconds) noexcept;
    /// How often a lock outlasted the wait.
    [[nodiscard]] qint64 locksMet() const noexcept { return m_locksMet; }
    [[nodiscard]] bool isBrief() const noexcept { return m_patienceMs <= kBriefMs; }

private:
    static int wait(void* self, int tries) noexcept;
    [[nodiscard]] bool goOn(bool isFirst) noexcept;

    Clock& m_clock;
    int m_patienceMs = kUsualMs;
    qint64 m_startedMs = 0;
    qint64 m_sleptUs = 0;
    qint64 m_locksMet = 0;
    qint64 m_gaveUpMs = -1; ///< when a brief wait was in vain last
};

} // namespace yrw::dao
