#pragma once

#include "addin/AutoNotes.h"
#include "addin/GridEvents.h"
#include "addin/INeighbour.h"
#include "addin/NotesOpening.h"
#include "addin/PlacedTools.h"
#include "addin/ReminderCheck.h"
#include "addin/TimerForm.h"
#include "framework/IAddIn.h"
#include "store/NotesSeek.h"

namespace yrw {

/// The object that a host creates to load the notes system.
///
/// `setComponent` takes the host's objects and connects their events; `Activate` opens the notes
/// database, places the tools and starts the timers; `DeActivate` and the object's end take all of
/// that back. Any order and any number of calls is fine. Several may serve one host and join in
/// one database: the first that is active handles what the user does. While the notes database is
/// closed, or after `DeActivate`, clicks, painting and `ShowNotes` do nothing.
///
/// No handler of an event of the host raises: what the host raises in one ends that handler.
/// Lifetime: counted. The host may let go at any time, also while the notes window is open.
/// Thread: the user-interface thread.
class AddIn final : public IAddIn, public INotesParent, public INeighbour {
public:
    /// Makes the application object and reads the switches. Raises `kErrorObjectRequired` when the
    /// process has no prompt.
    AddIn();

    [[nodiscard]] IHostComponent* Component() const override { return m_host.component.get(); }
    void setComponent(IHostComponent* component) override;
    [[nodiscard]] IHostInterface* IInterface() const override { return m_host.hostInterface.get(); }
    void setIInterface(IHostInterface* /*interface_*/) override {}
    [[nodiscard]] Ref<IApplication> Application() override { return nullptr; }
    [[nodiscard]] QString Name() override { return QStringLiteral("Yarrowen Notes"); }
    [[nodiscard]] QString Version() override { return m_module.version(); }
    void AttachControls() override {}
    void DetachControls() override {}
    bool Activate() override;
    [[nodiscard]] bool Activated() override { return false; }
    void DeActivate() override;
    [[nodiscard]] bool Initialised() override { return false; }

    void ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) override;
    void ShowStatus(const QString& text) override { m_host.showStatus(text); }
    [[nodiscard]] Ref<IHostApplication> hostApplication() override { return m_host.application(); }

    /// Shows a popup for each due reminder of the current user that is not on screen yet, whether
    /// or not checking is switched on; where there are many, the later ones follow from the event
    /// loop, so that nobody's typing waits. Popups whose reminder was answered elsewhere, or whose
    /// note is finished or gone, close. True when the check ran; it does not while a notes window
    /// is open or the host is busy. A failure is reported.
    bool CheckForReminders();
    /// The process-wide switch of that name.
    [[nodiscard]] bool CheckingForReminders() const;
    /// The timer window while the add-in is active, else nothing.
    [[nodiscard]] frmTimer* UpperTimerForm() const noexcept { return mfrmTimer.get(); }
    /// Nothing: both grids share the upper one's window.
    [[nodiscard]] frmTimer* LowerTimerForm() const noexcept { return nullptr; }
    /// Number of open popups of automatic notes.
    [[nodiscard]] int GetPopupFormCount() const { return AutoNotes::popupCount(); }

    [[nodiscard]] const AddInHost& host() const noexcept override { return m_host; }
    [[nodiscard]] bool hasToolIn(const IToolbar* toolbar) const noexcept override;
    [[nodiscard]] NotesWindows& notesWindows() noexcept override { return m_notesWindows; }
    void databaseOpened() noexcept override;
    void marksSwitched(bool goOn) noexcept override;
    void goOnWithFileThere() override;

private:
    ~AddIn() override;

    // Event handlers.
    void Class_Initialize();
    void Class_Terminate() noexcept;
    void atbComponent_Click(ITool& tool);
    void atbInterface_BandOpen(IBand& band);
    void atbInterface_Click(ITool& tool);
    void stbMain_DblClick();
    void mfrmTimer_CheckReminders(bool& cancel);
    void mfrmTimer_CheckWindowFocus();

    template <class... Args, class Handler>
    void on(Event<Args...>& event, Handler handler);
    void connectEvents();
    [[nodiscard]] bool reachesDatabase(ITool& tool) const;
    void start() noexcept;
    void startTimer();
    void stopReminders();
    void releaseAll() noexcept;
    void removeTools() noexcept;
    void repaintGrids() noexcept;

    Module1& m_module;
    AddInHost m_host;
    Standing m_standing{m_module, *this};
    PlacedTools m_tools{m_host};
    TimerForm mfrmTimer;
    NotesWindows m_notesWindows;
    NotesOpening m_opening{m_module, m_host};
    ReminderPopups m_popups{*this, m_module, m_module.reminders()};
    ReminderCheck m_reminderCheck{m_module, m_host, m_standing, m_notesWindows, m_popups};
    AutoNotes m_autoNotes{*this, m_module, m_host, m_standing, mfrmTimer};
    NotesSeek m_notesSeek;
    GridEvents m_upper{{*this, m_module, m_host, m_standing, m_opening, m_autoNotes, m_notesSeek}};
    GridEvents m_lower{{*this, m_module, m_host, m_standing, m_opening, m_autoNotes, m_notesSeek}};
    std::vector<Connection> m_connections;
    bool m_activating = false; ///< the user may be being asked
    bool m_released = false;   ///< since the last `DeActivate`; `Activate` clears it
};

} // namespace yrw
