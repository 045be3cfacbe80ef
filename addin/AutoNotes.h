#pragma once

#include "framework/HostObjects.h"
#include "platform/component/GuardedPtr.h"

namespace yrw {

/// What the add-in shows by itself about the current record: the popup of automatic notes and the
/// message on the host's status bar. Clears both away when the user moves on.
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class AutoNotes {
public:
    /// Name of the popup's form in the list of open forms.
    static const QString kFormName;
    /// Tag of a status bar whose text is a message about notes found.
    static const QString kMarker;

    /// Number of popups among the process's open forms.
    [[nodiscard]] static int popupCount();

    /// The record that was looked at last; nothing before the first.
    [[nodiscard]] const Ref<IRecord>& currentRecord() const noexcept { return m_currentRecord; }
    void forgetCurrentRecord() noexcept { m_currentRecord.reset(); }

    /// Unloads every popup.
    static void closePopups() noexcept;
    /// Empties the status bar when its text is a notes message, and unloads every popup. A popup
    /// that asks for it again while it is being unloaded changes nothing.
    void cleanUp(const GuardedPtr<IStatusBar>& statusBar) noexcept;

private:
    Ref<IRecord> m_currentRecord;
    bool m_cleaningUp = false;
};

} // namespace yrw
