#pragma once

#include "platform/clock/Clock.h"

#include <QString>

class QIODevice;

namespace yrw {

/// One line on standard error that says how far a long command is; silent during its first second
/// and wiped at its end.
class ProgressLine {
public:
    /// `what` is what is counted, e.g. "notes"; nothing shows unless somebody looks. Clock and
    /// device outlive the line.
    ProgressLine(QIODevice& err, const Clock& clock, QString what, bool isLookedAt);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

    /// One more is done.
    void step();
    /// So many are done.
    void reach(qint64 count);

private:
    void show();

    QIODevice& m_err;
    const Clock& m_clock;
    QString m_what;
    bool m_isLookedAt;
    qint64 m_count = 0;
    qint64 m_nextMs;
    qsizetype m_shown = 0; ///< characters that stand on the line
};

} // namespace yrw
