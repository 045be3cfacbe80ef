#pragma once

#include "platform/component/Counted.h"

namespace yrw {

class AddInHost;
class IToolbar;
class NotesWindows;

/// An add-in as the others of its process, and what they share, see it.
/// Lifetime: counted. Thread: the user-interface thread.
class INeighbour : public virtual Counted {
public:
    [[nodiscard]] virtual const AddInHost& host() const noexcept = 0;
    /// True while it has a tool in that toolbar of its host.
    [[nodiscard]] virtual bool hasToolIn(const IToolbar* toolbar) const noexcept = 0;
    [[nodiscard]] virtual NotesWindows& notesWindows() noexcept = 0;
    /// The shared notes database was opened.
    virtual void databaseOpened() noexcept = 0;
    /// A switch that marks rows went on, or off.
    virtual void marksSwitched(bool goOn) noexcept = 0;
    /// Closes the notes database and opens what lies at its place now, as activating does.
    virtual void goOnWithFileThere() = 0;
};

} // namespace yrw
