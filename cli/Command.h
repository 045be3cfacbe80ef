#pragma once

#include "platform/dao/Database.h"
#include "platform/settings/SettingsStore.h"

#include <QStringList>

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

/// What a command needs of the world. All outlive it.
struct CommandServices {
    dao::EngineServices engine;
    SettingsStore& settings;
};

/// Runs the command that the arguments ask for (the program's name first). A failure is one clear
/// line on `err`. Raises nothing.
[[nodiscard]] ExitStatus runCommand(const QStringList& arguments, const CommandStreams& streams,
                                    const CommandServices& services);

} // namespace yrw
