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

/// A clock in the process's zone, moved by hand: its hands follow the zone's changes.
class ZoneClock final : public Clock {
public:
    explicit ZoneClock(const QDateTime& start) : m_seconds(start.toSecsSinceEpoch()) {}

    [[nodiscard]] QDateTime now() const override {
        return QDateTime::fromSecsSinceEpoch(m_seconds);
    }
    [[nodiscard]] qint64 monotonicMs() const override { return m_monotonicMs; }

    /// Lets time pass.
    void pass(qint64 seconds) {
        m_seconds += seconds;
        m_monotonicMs += seconds * 1000;
    }
    /// Sets the clock, forward or back, as a user does; or the machine slept.
    void set(qint64 seconds) { m_seconds += seconds; }

private:
    qint64 m_seconds;
    qint64 m_monotonicMs = 0;
};

} // namespace yrw::test
