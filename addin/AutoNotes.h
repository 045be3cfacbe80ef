#pragma once

#include "framework/HostObjects.h"
#include "platform/component/GuardedPtr.h"

#include <QPointer>

namespace yrw {

class AddInHost;
class INotesParent;
class NotesContext;
class Standing;
class TimerForm;
class frmAutoNotes;

/// What the add-in shows by itself about the current record: the popup of automatic notes and the
/// message on the host's status bar. Clears both away when the user moves on.
///
/// Nothing here raises: a check that fails shows nothing.
/// Lifetime: a member of its `AddIn`, as is what it is given. Thread: the user-interface thread.
class AutoNotes {
public:
    /// Name of the popup's form in the list of open forms.
    static const QString kFormName;
    /// Tag of a status bar whose text is a message about notes found.
    static const QString kMarker;

    AutoNotes(INotesParent& addIn, NotesContext& context, const AddInHost& host,
              const Standing& standing, const TimerForm& timers)
        : m_addIn(addIn), m_context(context), m_host(host), m_standing(standing), m_timers(timers) {
    }
    AutoNotes(const AutoNotes&) = delete;
    AutoNotes& operator=(const AutoNotes&) = delete;

    /// Number of popups among the process's open forms.
    [[nodiscard]] static int popupCount();

    /// The record that was looked at last; nothing before the first.
    [[nodiscard]] const Ref<IRecord>& currentRecord() const noexcept { return m_currentRecord; }
    void forgetCurrentRecord() noexcept { m_currentRecord.reset(); }

    /// Shows the active notes of the current record that are to be shown automatically; the record
    /// is asked of the controller when there is none. Does nothing while notes are not to pop up,
    /// the host cannot be disturbed, or a new record is being begun.
    /// `closesPopup` closes one that is open first.
    void check(const GuardedPtr<IGridController>& controller, bool closesPopup) noexcept;
    /// The user stays on a record: shows its notes instead of those of the one before. Nothing
    /// while another add-in does so for the same host.
    void landed(const GuardedPtr<IGridController>& controller) noexcept;
    /// Unloads the popup that this add-in shows; true when there was one.
    bool closePopup() noexcept;
    /// Empties the status bar when its text is a notes message, and unloads every popup. A popup
    /// that asks for it again while it is being unloaded changes nothing.
    void clear() noexcept;
    /// The user moves on: clears what this add-in shows, not what another one does for the same
    /// host, and stops the half-second timer.
    void cleanUp() noexcept;
    /// The half-second tick: clears when the host has lost the focus; without a popup the timer
    /// stops.
    void watchFocus();

private:
    void showNotes(bool closesPopup);
    [[nodiscard]] Ref<dao::Recordset> openNotes(IRecord& record) const;
    [[nodiscard]] QString heading(IRecord& record, const dao::Recordset& notes) const;
    void showStatus(int count, const QString& heading) const;
    [[nodiscard]] frmAutoNotes& popup();
    void connectPopup(frmAutoNotes& form);
    void present(frmAutoNotes& form);

    INotesParent& m_addIn;
    NotesContext& m_context;
    const AddInHost& m_host;
    const Standing& m_standing;
    const TimerForm& m_timers;
    Ref<IRecord> m_currentRecord;
    QPointer<frmAutoNotes> mfrmAutoNotes; ///< the popup in the making or on screen
    bool m_cleaningUp = false;
};

} // namespace yrw
