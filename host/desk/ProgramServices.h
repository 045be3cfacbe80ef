#pragma once

#include "framework/HostUtility.h"
#include "framework/Services.h"
#include "framework/SettingsWatch.h"
#include "platform/clock/Clock.h"
#include "platform/files/FileSystem.h"
#include "platform/forms/WidgetPrompt.h"
#include "platform/settings/SettingsStore.h"

namespace yrw {

/// What a program with windows runs on: the machine's clock, files and settings, and real boxes as
/// the prompt.
///
/// Lifetime: on the stack of main(), after the application object and before the first window; at
/// its end nobody answers the prompt any more.
/// Thread: the user-interface thread.
class ProgramServices {
public:
    ProgramServices() { Prompt::setInstance(&m_prompt); }
    ProgramServices(const ProgramServices&) = delete;
    ProgramServices& operator=(const ProgramServices&) = delete;
    ~ProgramServices() { Prompt::setInstance(nullptr); }

    FileSystem files;
    SettingsStore settings;

private:
    WidgetPrompt m_prompt{Clock::instance()};
    HostUtility m_utility{m_prompt};
    SettingsWatch m_settingsWatch{settings, Clock::instance(), m_prompt,
                                  QStringLiteral("Yarrowen Desk")};

public:
    /// The same, as windows and add-ins take them.
    const Services services{Clock::instance(), settings, files, m_prompt, m_utility};
};

} // namespace yrw
