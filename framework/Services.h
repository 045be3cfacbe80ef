#pragma once

namespace yrw {

class Clock;
class FileSystem;
class HostUtility;
class Prompt;
class SettingsStore;

/// What a composition root passes down. All outlive whoever holds this.
struct Services {
    Clock& clock;
    SettingsStore& settings;
    FileSystem& files;
    Prompt& prompt;
    HostUtility& utility;
};

} // namespace yrw
