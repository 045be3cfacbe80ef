#include "platform/clock/Clock.h"

#include <chrono>
#include <utility>

namespace yrw {

namespace {

QDateTime wholeSeconds(QDateTime time) {
    const QTime clockTime = time.time();
    time.setTime(QTime(clockTime.hour(), clockTime.minute(), clockTime.second()));
    return time;
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

ManualClock::ManualClock(QDateTime start) : m_now(wholeSeconds(std::move(start))) {}

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
