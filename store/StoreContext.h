#pragma once

#include "framework/IApplication.h"

namespace yrw {

class Clock;
class FileSystem;

/// What the store reads of the process that it works in; the narrow part of a `NotesContext`. All
/// getters are live: they answer what is so at the moment of the call.
/// Lifetime: outlives every object of the store. Thread: the user-interface thread.
class StoreContext {
public:
    virtual ~StoreContext();

    [[nodiscard]] virtual Ref<dao::Workspace> workspace() = 0;
    /// The notes database; nothing while it is closed.
    [[nodiscard]] virtual Ref<dao::Database> database() = 0;
    /// True exactly while the notes database is open.
    [[nodiscard]] virtual bool isDatabaseOpen() = 0;
    [[nodiscard]] virtual Ref<IHostApplication> hostApplication() = 0;
    /// Program id of the host that is served; the same for writer, list, popup and marks.
    [[nodiscard]] virtual QString hostProgID() = 0;
    [[nodiscard]] virtual Ref<IUser> currentUser() = 0;
    [[nodiscard]] virtual HostDataHelper& dataHelper() = 0;
    [[nodiscard]] virtual Clock& clock() = 0;
    /// Version of the component, "1.0.0".
    [[nodiscard]] virtual QString version() = 0;
    [[nodiscard]] virtual QString databaseFolder() = 0;
    [[nodiscard]] virtual QString templateFolder() = 0;
    /// Closes the shared notes database and its workspace; twice without an error.
    virtual void closeDatabase() = 0;
};

} // namespace yrw
