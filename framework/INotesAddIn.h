#pragma once

#include "framework/IAddIn.h"

namespace yrw {

class HostDataHelper;
struct Services;

/// The process-wide switches of the notes add-in.
enum class NotesSwitch {
    CheckAutoNotes,
    CheckForReminders,
    FlagNotesRow,
    HighlightNotesRow,
    ShowPopupWindow
};

/// How the add-in's own windows call it back. Not part of the contract with the host.
/// Lifetime and thread as `IAddIn`.
class INotesAddIn : public virtual IAddIn {
public:
    ~INotesAddIn() override;

    /// Opens the notes window, modally, for a host record (or none); `noteRecordID` is the note to
    /// show, 0 for none.
    virtual void ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) = 0;
    /// Program id of the host that is served: the owner's program id of its notes.
    [[nodiscard]] virtual QString HostProgID() const = 0;
    [[nodiscard]] virtual Services& services() = 0;
    /// The store's application object; nothing before the add-in is initialised.
    [[nodiscard]] virtual Ref<IApplication> NotesApplication() const = 0;
    /// Folder of the host's database, where the notes database and its support files lie.
    [[nodiscard]] virtual QString DatabaseDirectory() const = 0;
    /// Folder of the template that ships beside the component.
    [[nodiscard]] virtual QString TemplateDirectory() const = 0;

    [[nodiscard]] virtual bool switchOn(NotesSwitch which) const = 0;
    /// Sets the process-wide switch; the settings store is the caller's.
    virtual void setSwitch(NotesSwitch which, bool on) = 0;
    virtual void setReminderTimerEnabled(bool enabled) = 0;
    virtual void setAutoNoteTimerEnabled(bool enabled) = 0;
    /// Paints both grids of the host anew.
    virtual void repaintGrids() = 0;
};

} // namespace yrw
