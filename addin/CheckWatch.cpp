#include "addin/CheckWatch.h"

#include "platform/clock/Clock.h"

namespace yrw {

void CheckWatch::begin(const Clock& clock) {
    *this = {};
    m_at = clock.now();
    m_atMs = clock.monotonicMs();
}

void CheckWatch::succeeded(const Clock& clock) {
    begin(clock);
    m_everRan = true;
}

QString CheckWatch::text(const Clock& clock) const {
    const QString since = (m_everRan ? QStringLiteral("Reminders were last checked at %1.")
                                     : QStringLiteral("No reminders were checked since %1."))
                              .arg(m_at.toString(QStringLiteral("dd/MM/yyyy HH:mm")));
    if (isFailing()) {
        return m_failure + u' ' + since;
    }
    const qint64 age = clock.monotonicMs() - m_atMs;
    return age > kSilentMinutes * 60'000 ? since : QString();
}

} // namespace yrw
