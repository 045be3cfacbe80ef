#pragma once

#include <QString>

class QIODevice;

namespace yrw {

/// How a command ends.
enum ExitStatus : int {
    kExitDone = 0,
    kExitNothing = 1, ///< not found, or nothing to do
    kExitUsage = 2,   ///< wrong use
    kExitFailed = 3,
};

/// Where a command reads and writes; all open, texts as UTF-8.
struct CommandStreams {
    QIODevice& in;
    QIODevice& out;
    QIODevice& err;
    bool outIsTerminal = false;
    bool errIsTerminal = false; ///< only then how far a long command is shows there
};

/// One line on standard error.
void complain(const CommandStreams& streams, const QString& text);

} // namespace yrw
