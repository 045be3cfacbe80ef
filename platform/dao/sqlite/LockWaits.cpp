#include "platform/dao/sqlite/LockWaits.h"

#include "platform/clock/Clock.h"

#include <QRandomGenerator>
#include <QThread>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

constexpr int kShortestSleepUs = 200;
constexpr int kLongestSleepUs = 1700;
constexpr qint64 kGoOnWithoutMs = 500;

} // namespace

void LockWaits::serve(sqlite3* connection) noexcept {
    sqlite3_busy_handler(connection, &LockWaits::wait, this);
}

int LockWaits::setPatience(int milliseconds) noexcept {
    const int before = m_patienceMs;
    m_patienceMs = milliseconds;
    return before;
}

int LockWaits::wait(void* self, int tries) noexcept {
    return static_cast<LockWaits*>(self)->goOn(tries == 0) ? 1 : 0;
}

bool LockWaits::goOn(bool isFirst) noexcept {
    const qint64 now = m_clock.monotonicMs();
    if (isFirst) {
        m_startedMs = now;
        m_sleptUs = 0;
        if (isBrief() && m_gaveUpMs >= 0 && now - m_gaveUpMs < kGoOnWithoutMs) {
            ++m_locksMet;
            return false;
        }
    }
    // The sleeps are summed as well, for a clock that stands still.
    if (now - m_startedMs >= m_patienceMs || m_sleptUs >= m_patienceMs * 1000LL) {
        m_gaveUpMs = isBrief() ? now : m_gaveUpMs;
        ++m_locksMet;
        return false;
    }
    const int sleep = QRandomGenerator::global()->bounded(kShortestSleepUs, kLongestSleepUs + 1);
    QThread::usleep(static_cast<unsigned long>(sleep));
    m_sleptUs += sleep;
    return true;
}

} // namespace yrw::dao
