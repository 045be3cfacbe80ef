#pragma once

#include "framework/IApplication.h"

namespace yrw {

/// The add-in that opened a window of the notes, as that window calls it back. Not part of the
/// contract with the host.
/// Lifetime: counted. Thread: the user-interface thread.
class INotesParent : public virtual Counted {
public:
    ~INotesParent() override;

    /// Opens the notes window, modally, for a host record (or none); `noteRecordID` is the note to
    /// show, 0 for none.
    virtual void ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) = 0;
    /// Shows a text on the host's window; nothing happens where that fails.
    virtual void ShowStatus(const QString& text) = 0;
    /// The application object of its host; nothing while there is none. Raises what the host
    /// raises.
    [[nodiscard]] virtual Ref<IHostApplication> hostApplication() = 0;
};

} // namespace yrw
