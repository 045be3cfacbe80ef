#pragma once

#include "addin/AutoNotes.h"
#include "addin/CheckWatch.h"
#include "addin/GridEvents.h"
#include "addin/Module1.h"
#include "addin/NotesWindows.h"
#include "addin/ReminderPopups.h"
#include "framework/HostUtility.h"
#include "store/NotesSeek.h"
#include "store/Schema.h"

#include <QPointer>

#include <deque>
#include <exception>

namespace yrw {

class BusySign;
class Form;
class frmTimer;

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
class AddIn final : public virtual INotesAddIn {
public:
    /// Makes the application object and reads the switches. Raises `kErrorObjectRequired` when the
    /// process has no prompt.
    AddIn();

    [[nodiscard]] IHostComponent* Component() const override { return m_component.get(); }
    void setComponent(IHostComponent* component) override;
    [[nodiscard]] IHostInterface* IInterface() const override { return m_interface.get(); }
    void setIInterface(IHostInterface* interface_) override;
    [[nodiscard]] Ref<IApplication> Application() override { return nullptr; }
    [[nodiscard]] QString Name() override;
    [[nodiscard]] QString Version() override { return m_module.version(); }
    void AttachControls() override {}
    void DetachControls() override {}
    bool Activate() override;
    [[nodiscard]] bool Activated() override { return false; }
    void DeActivate() override;
    [[nodiscard]] bool Initialised() override { return false; }

    void ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) override;
    [[nodiscard]] QString HostProgID() const override { return m_hostProgID; }
    [[nodiscard]] Services& services() override { return m_module.services(); }
    [[nodiscard]] Ref<IApplication> NotesApplication() const override;
    [[nodiscard]] QString DatabaseDirectory() const override { return m_module.databaseFolder(); }
    [[nodiscard]] QString TemplateDirectory() const override { return m_module.templateFolder(); }
    [[nodiscard]] bool switchOn(NotesSwitch which) const override;
    void setSwitch(NotesSwitch which, bool on) override;
    void setReminderTimerEnabled(bool enabled) override;
    void setAutoNoteTimerEnabled(bool enabled) override;
    void repaintGrids() override;

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

    // For the handlers of the two grids.
    /// True while another add-in, activated before this one, serves the same host.
    [[nodiscard]] bool isBehind() const;
    /// True while this add-in is active and the shared database is open.
    [[nodiscard]] bool isDatabaseOpen() const;
    [[nodiscard]] HostDataHelper& dataHelper() const { return m_module.dataHelper(); }
    /// The open notes database; nothing while it is closed.
    [[nodiscard]] Ref<dao::Database> notesDatabase() const { return m_module.database(); }
    [[nodiscard]] NotesSeek& notesSeek() noexcept { return m_notesSeek; }
    /// Opens the seek recordset when it is not open.
    void openNotesSeek() { m_notesSeek.open(m_module.database()); }
    /// Background of marked rows, &H00BBGGRR.
    [[nodiscard]] int highlightColour() const noexcept { return m_highlightColour; }
    /// The host's status bar; nothing when it has none.
    [[nodiscard]] IStatusBar* statusBar() const noexcept { return stbMain.get(); }
    /// Shows the automatic notes of the record that the user stays on.
    void checkAutoNotes(const GuardedPtr<IGridController>& controller) noexcept;
    /// Clears the popup and the status-bar message away and stops the half-second timer.
    void cleanUpAutoNotes() noexcept;

    // For the process-wide state.
    /// True while this add-in has a tool in that toolbar of its host.
    [[nodiscard]] bool hasToolIn(const IToolbar* toolbar) const noexcept;
    /// Makes this add-in's host the one that is served.
    void becomeServed() noexcept;
    void databaseOpened() noexcept;
    [[nodiscard]] NotesWindows& notesWindows() noexcept { return m_notesWindows; }
    /// Closes the notes database and opens what lies at its place now, as activating does.
    void goOnWithFileThere();
    void marksSwitchedOn() noexcept;

private:
    struct EndTimer {
        void operator()(frmTimer* form) const noexcept;
    };
    using TimerForm = std::unique_ptr<frmTimer, EndTimer>;

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

    // The host's objects.
    void takeHostObjects() noexcept;
    void connectEvents();
    template <class... Args, class Handler>
    void on(Event<Args...>& event, Handler handler);
    [[nodiscard]] bool reachesDatabase(ITool& tool) const;
    [[nodiscard]] QWidget* hostWindow() const noexcept;

    // Life.
    [[nodiscard]] bool isTurnedAway();
    void start() noexcept;
    void switchToolsOn();
    void startTimer();
    void releaseAll() noexcept;
    void removeTools() noexcept;

    // Opening the notes database.
    void OpenDatabase();
    [[nodiscard]] QString folderOfHost() const;
    void openDatabaseOfHost();
    bool CreateNotesDatabase(const QString& path);
    [[nodiscard]] Ref<IHostApplication> requiredHost() const;
    void takeCurrentUser();
    void takeUserNames();
    void takeProgramId(IHostApplication& host);

    // Reminders.
    void stopReminders();
    bool runCheck(bool quietly);
    bool checkReminders(bool quietly);
    [[nodiscard]] std::deque<Ref<IRecord>> findDueReminders();
    [[nodiscard]] bool isHostBusy() noexcept;
    [[nodiscard]] std::deque<Ref<IRecord>> waitingReminders();
    void reportCheckFailure(const std::exception_ptr& failure, bool quietly);
    void showWhenChecked();

    // Showing notes.
    [[nodiscard]] Ref<IRecord> recordOfNote(qint64 noteRecordID);
    [[nodiscard]] bool isNotesWindowOpen() const { return m_notesWindows.isOpen(); }
    void showNotesWindow(const Ref<IRecord>& record, qint64 noteRecordID);

    [[nodiscard]] Prompt& prompt() const { return m_module.services().utility.prompt(); }

    Module1& m_module;
    bool m_active = false;
    bool m_released = false; ///< since the last `DeActivate`; `Activate` clears it

    GuardedPtr<IHostComponent> m_component;
    GuardedPtr<IHostInterface> m_interface;
    QString m_hostProgID;
    GuardedPtr<IToolbar> atbComponent;
    GuardedPtr<IToolbar> atbInterface;
    TimerForm mfrmTimer;
    GuardedPtr<IGridController> mobjUpperGridClass;
    GuardedPtr<IGridController> mobjLowerGridClass;
    GuardedPtr<IRecordGrid> dbgUpper;
    GuardedPtr<IRecordGrid> dbgLower;
    GuardedPtr<IGridSplits> m_upperSplits;
    GuardedPtr<IGridSplits> m_lowerSplits;
    GuardedPtr<IStatusBar> stbMain;
    std::vector<Connection> m_connections;

    QString
        m_placedBandKey; ///< band that holds the "Show Notes" tool; empty while it is not placed
    bool m_gridToolPlaced = false;
    NotesWindows m_notesWindows;
    bool m_activating = false;
    bool m_checkingReminders = false;
    ReminderPopups m_popups{*this, m_module};
    CheckWatch m_checkWatch;
    int m_highlightColour = schema::kDefaultHighlight;
    NotesSeek m_notesSeek;
    GridEvents m_upper{*this};
    GridEvents m_lower{*this};
    AutoNotes m_autoNotes{*this};
};

} // namespace yrw
