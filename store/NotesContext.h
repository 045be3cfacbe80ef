#pragma once

#include "framework/INotesParent.h"
#include "store/StoreContext.h"

namespace yrw {

class Application;
struct Services;

/// The process-wide switches of the notes add-in.
enum class NotesSwitch {
    CheckAutoNotes,
    CheckForReminders,
    FlagNotesRow,
    HighlightNotesRow,
    ShowPopupWindow
};

/// The one object that windows and what works for them are given, when they are made: the notes
/// that are open, the host that is served, and the services of the process.
/// Lifetime: outlives all of them. Thread: the user-interface thread.
class NotesContext : public StoreContext {
public:
    ~NotesContext() override;

    [[nodiscard]] virtual Services& services() = 0;
    /// Raises `kErrorObjectRequired` while there is none.
    [[nodiscard]] virtual yrw::Application& application() = 0;
    [[nodiscard]] virtual bool switchOn(NotesSwitch which) const = 0;
};

} // namespace yrw
