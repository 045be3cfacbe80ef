#pragma once

#include "cli/CommandStreams.h"
#include "platform/dao/Database.h"
#include "platform/settings/SettingsStore.h"

#include <QStringList>

namespace yrw {

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
