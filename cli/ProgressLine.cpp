#include "cli/ProgressLine.h"

#include <QIODevice>

#include <utility>

namespace yrw {

namespace {
constexpr qint64 kFirstMs = 1000;
constexpr qint64 kBetweenMs = 250;
constexpr qint64 kStepsPerLook = 64; ///< the clock is looked at once in so many steps
} // namespace

ProgressLine::ProgressLine(QIODevice& err, const Clock& clock, QString what, bool isLookedAt)
    : m_err(err), m_clock(clock), m_what(std::move(what)), m_isLookedAt(isLookedAt),
      m_nextMs(clock.monotonicMs() + kFirstMs) {}

ProgressLine::~ProgressLine() {
    if (m_shown > 0) {
        m_err.write('\r' + QByteArray(m_shown, ' ') + '\r');
    }
}

void ProgressLine::step() {
    ++m_count;
    if (!m_isLookedAt || m_count % kStepsPerLook != 0) {
        return;
    }
    show();
}

void ProgressLine::reach(qint64 count) {
    m_count = count;
    if (m_isLookedAt) {
        show();
    }
}

void ProgressLine::show() {
    const qint64 nowMs = m_clock.monotonicMs();
    if (nowMs < m_nextMs) {
        return;
    }
    m_nextMs = nowMs + kBetweenMs;
    const QByteArray text = QStringLiteral("%1 %2 ...").arg(m_count).arg(m_what).toUtf8();
    m_err.write('\r' + text);
    m_shown = text.size();
}

} // namespace yrw
