#pragma once

#include "addin/LockWaitDialog.h"
#include "addin/ReplacedFile.h"
#include "addin/ShownReminders.h"
#include "framework/HostDataHelper.h"
#include "framework/INotesAddIn.h"
#include "framework/Services.h"
#include "platform/component/GuardedPtr.h"
#include "store/Application.h"

#include <array>
#include <memory>
#include <vector>

namespace yrw {

class AddIn;
class SettingsWatch;

/// The process-wide state, shared by every `AddIn` and by the windows, and the place where the
/// component is put together: only here are the process's clock and prompt asked for.
///
/// The application object is made once; the shared database is open from the first successful
/// `Activate` until the last activated add-in lets go of it.
/// Lifetime: from its first use to the end of the process; never destroyed, because what it holds
/// must not end after the window toolkit.
/// Thread: the user-interface thread.
class Module1 final : public StoreContext {
public:
    [[nodiscard]] static Module1& instance();
    Module1(const Module1&) = delete;
    Module1& operator=(const Module1&) = delete;

    /// Counts an add-in among those alive. The first one makes the services anew, from the clock
    /// and the prompt of that moment; raises `kErrorObjectRequired` when no prompt was set.
    void add(AddIn& addIn);
    void remove(AddIn& addIn) noexcept;
    [[nodiscard]] int addInCount() const noexcept { return static_cast<int>(m_addIns.size()); }

    /// Makes the application object when there is none yet; true when there is one.
    bool InitialiseOLEServers();
    [[nodiscard]] Services& services();
    [[nodiscard]] SettingsWatch& settingsWatch();
    [[nodiscard]] const Ref<Application>& application() const noexcept { return m_application; }
    /// The application object as the framework sees it; nothing while no add-in is active.
    [[nodiscard]] Ref<IApplication> applicationView() const { return m_applicationView; }

    /// Notes that an add-in works with the shared database.
    void activated(AddIn& addIn);
    /// True while another add-in that works with it, noted before this one, serves the same host.
    [[nodiscard]] bool isBehind(const AddIn& addIn) const noexcept;
    /// True while any other add-in that works with it has a tool in that toolbar.
    [[nodiscard]] bool isSharedToolbar(const AddIn& addIn, const IToolbar* toolbar) const noexcept;
    /// The first add-in that works with it beside that one; nothing when there is none.
    [[nodiscard]] AddIn* otherActive(const AddIn& addIn) const noexcept;
    /// Those that work with it, in the order in which they began.
    [[nodiscard]] const std::vector<AddIn*>& active() const noexcept { return m_active; }
    /// Notes that it does no longer; the last one closes the database. Twice without an error.
    void letGo(AddIn& addIn) noexcept;

    /// Makes a host the one that is served.
    void setHost(IHostComponent* component, const QString& progID);
    /// Forgets the host of an add-in when it is the one that is served; that of another active
    /// add-in takes over.
    void dropHost(const AddIn& addIn) noexcept;

    /// Opens the notes database through a workspace, closing one that was open; add-ins that are
    /// active are told. Raises what `openNotesDatabase` raises; the database then is closed.
    void openDatabase(const Ref<dao::Workspace>& workspace, const QString& path);
    /// True when the open database is the one at that path.
    [[nodiscard]] bool isOpenAt(const QString& path);
    void setDatabaseFolder(const QString& folder) { m_databaseFolder = folder; }
    /// Keeps the user who works with the host; new and changed rows are stamped with it.
    void setCurrentUser(const Ref<IUser>& user);

    /// Reads the five switches from the per-user settings.
    void loadSwitches();
    [[nodiscard]] bool switchOn(NotesSwitch which) const noexcept {
        return m_switches[static_cast<std::size_t>(which)];
    }
    /// Sets a switch; when row marking goes on, every add-in is told.
    void setSwitch(NotesSwitch which, bool on);

    [[nodiscard]] ReplacedFile& replacedFile() noexcept { return m_replacedFile; }
    [[nodiscard]] ShownReminders& reminders() noexcept { return m_reminders; }

    /// Uses a template that lies elsewhere than beside the component; empty: beside it again.
    void setTemplateFolder(const QString& folder) { m_templateFolder = folder; }
    /// Full path of the file that this code was loaded from.
    [[nodiscard]] static QString componentFile();

    [[nodiscard]] Ref<dao::Workspace> workspace() override { return m_workspace; }
    [[nodiscard]] Ref<dao::Database> database() override;
    [[nodiscard]] bool isDatabaseOpen() override;
    [[nodiscard]] Ref<IHostApplication> hostApplication() override;
    [[nodiscard]] QString hostProgID() override { return m_hostProgID; }
    [[nodiscard]] Ref<IUser> currentUser() override { return m_currentUser; }
    [[nodiscard]] HostDataHelper& dataHelper() override { return m_dataHelper; }
    [[nodiscard]] Clock& clock() override;
    [[nodiscard]] QString version() override;
    [[nodiscard]] QString databaseFolder() override { return m_databaseFolder; }
    [[nodiscard]] QString templateFolder() override;
    void closeDatabase() override;

private:
    struct World;

    Module1();
    ~Module1() override;

    std::unique_ptr<World> m_world;
    std::vector<AddIn*> m_addIns;
    std::vector<AddIn*> m_active;
    Ref<Application> m_application;
    Ref<IApplication> m_applicationView;
    GuardedPtr<IHostComponent> m_component;
    QString m_hostProgID;
    LockWaitDialog m_lockWait; ///< outlives the database
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    QString m_databasePath;
    HostDataHelper m_dataHelper;
    Ref<IUser> m_currentUser;
    QString m_databaseFolder;
    QString m_templateFolder;
    std::array<bool, 5> m_switches{};
    ShownReminders m_reminders;
    ReplacedFile m_replacedFile{*this};
};

} // namespace yrw
