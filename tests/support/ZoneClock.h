#pragma once

#include "platform/clock/Clock.h"

#include <time.h>

namespace yrw::test {

/// Puts the process into a time zone until its end.
class InZone {
public:
    explicit InZone(const char* zone)
        : m_before(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        change(zone);
    }
    InZone(const InZone&) = delete;
    InZone& operator=(const InZone&) = delete;
    ~InZone() {
        if (m_wasSet) {
            change(m_before.constData());
        } else {
            qunsetenv("TZ");
            ::tzset();
        }
    }
    /// Goes on to another zone, as a traveller does.
    static void change(const char* zone) {
        qputenv("TZ", zone);
        ::tzset();
    }

private:
    QByteArray m_before;
    bool m_wasSet;
};

/// Moves a clock so that its hands follow the process's zone and the zone's changes.
class ZoneClock {
public:
    ZoneClock(ManualClock& clock, const QDateTime& start)
        : m_clock(clock), m_seconds(start.toSecsSinceEpoch()) {
        set(0);
    }

    [[nodiscard]] QDateTime now() const { return m_clock.now(); }
    /// Lets time pass.
    void pass(qint64 seconds) {
        m_clock.advance(seconds);
        set(seconds);
    }
    /// Sets the clock, forward or back, as a user does; or the machine slept. Also called with 0
    /// after a change of the zone.
    void set(qint64 seconds) {
        m_seconds += seconds;
        m_clock.setNow(QDateTime::fromSecsSinceEpoch(m_seconds));
    }

private:
    ManualClock& m_clock;
    qint64 m_seconds;
};

} // namespace yrw::test
