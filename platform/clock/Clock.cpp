#include "platform/clock/Clock.h"

#include <chrono>

namespace yrw {

namespace {

// Taking the milliseconds off keeps the moment, also in the hour that the end of summer time runs
// through twice; setting the time of day would not.
QDateTime wholeSeconds(const QDateTime& time) {
    return time.addMSecs(-time.time().msec()).toLocalTime();
}

class SystemClock final : public Clock {
public:
    [[nodiscard]] QDateTime now() const override {
        return wholeSeconds(QDateTime::currentDateTime());
    }
    [[nodiscard]] qint64 monotonicMs() const override {
        const auto passed = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
    }
};

Clock*& currentClock() {
    static Clock* clock = nullptr;
    return clock;
}

} // namespace

Clock::~Clock() = default;

Clock& Clock::instance() {
    static SystemClock system;
    return currentClock() != nullptr ? *currentClock() : system;
}

void Clock::setInstance(Clock* clock) {
    currentClock() = clock;
}

ManualClock::ManualClock(const QDateTime& start) : m_now(wholeSeconds(start)) {}

QDateTime ManualClock::now() const {
    return m_now;
}

qint64 ManualClock::monotonicMs() const {
    return m_monotonicMs;
}

void ManualClock::setNow(const QDateTime& now) {
    m_now = wholeSeconds(now);
}

void ManualClock::advance(qint64 seconds) {
    m_now = m_now.addSecs(seconds);
    m_monotonicMs += seconds * 1000;
}

} // namespace yrw
