#pragma once

#include "addin/LockWaitDialog.h"
#include "addin/ReplacedFile.h"
#include "addin/ShownReminders.h"
#include "framework/HostDataHelper.h"
#include "framework/Services.h"
#include "store/Application.h"
#include "store/NotesContext.h"

#include <array>
#include <memory>
#include <vector>

namespace yrw {

class AddInHost;
class INeighbour;
class IToolbar;
class SettingsWatch;

/// The process-wide state, shared by every `AddIn` and by the windows, and the place where the
/// component is put together: only here are the process's clock and prompt asked for.
///
/// The application object is made once; the shared database is open from the first successful
/// `Activate` until the last activated add-in lets go of it.
/// Lifetime: from its first use to the end of the process; never destroyed, because what it holds
/// must not end after the window toolkit.
/// Thread: the user-interface thread.
class Module1 final : public NotesContext {
public:
    [[nodiscard]] static Module1& instance();
    Module1(const Module1&) = delete;
    Module1& operator=(const Module1&) = delete;

    /// Counts an add-in among those alive. The first one makes the services anew, from the clock
    /// and the prompt of that moment; raises `kErrorObjectRequired` when no prompt was set.
    void add(INeighbour& addIn);
    void remove(INeighbour& addIn) noexcept;
    [[nodiscard]] int addInCount() const noexcept { return static_cast<int>(m_addIns.size()); }

    /// Makes the application object when there is none yet; true when there is one.
    bool InitialiseOLEServers();
    [[nodiscard]] Services& services() override;
    [[nodiscard]] SettingsWatch& settingsWatch();
    [[nodiscard]] Application& application() override;
    /// The application object as the framework sees it; nothing while no add-in is active.
    [[nodiscard]] Ref<IApplication> applicationView() const { return m_applicationView; }

    /// Notes that an add-in works with the shared database.
    void activated(INeighbour& addIn);
    /// True while another add-in that works with it, noted before this one, serves the same host.
    [[nodiscard]] bool isBehind(const INeighbour& addIn) const noexcept;
    /// True while any other add-in that works with it has a tool in that toolbar.
    [[nodiscard]] bool isSharedToolbar(const INeighbour& addIn,
                                       const IToolbar* toolbar) const noexcept;
    /// The first add-in that works with it beside that one; nothing when there is none.
    [[nodiscard]] INeighbour* otherActive(const INeighbour& addIn) const noexcept;
    /// Notes that it does no longer; the last one closes the database. Twice without an error.
    void letGo(INeighbour& addIn) noexcept;

    /// Makes a host the one that is served: whose records notes are kept on. One without a
    /// component is not.
    void serve(const AddInHost& host) noexcept;
    /// An add-in was given a host: it is served unless another add-in is at work.
    void hostTaken(const INeighbour& addIn) noexcept;
    /// An add-in lets go of its host. Where that is the one that is served, the host of another
    /// active add-in takes over.
    void hostLeft(const INeighbour& addIn) noexcept;

    /// Opens the notes database through a workspace, closing one that was open; add-ins that are
    /// active are told. Raises what `openNotesDatabase` raises; the database then is closed.
    void openDatabase(const Ref<dao::Workspace>& workspace, const QString& path);
    /// True when the open database is the one at that path.
    [[nodiscard]] bool isOpenAt(const QString& path);
    void setDatabaseFolder(const QString& folder) { m_databaseFolder = folder; }
    /// Keeps the user who works with the host; new and changed rows are stamped with it.
    void setCurrentUser(const Ref<IUser>& user);

    /// Reads the five switches from the per-user settings. What is set there later, in this
    /// process, they follow by themselves; every add-in is told of those that mark rows.
    void loadSwitches();
    [[nodiscard]] bool switchOn(NotesSwitch which) const override {
        return m_switches[static_cast<std::size_t>(which)];
    }

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
    [[nodiscard]] QString hostProgID() override;
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

    void followSettings();
    void setSwitch(NotesSwitch which, bool on);

    std::unique_ptr<World> m_world;
    std::vector<INeighbour*> m_addIns;
    std::vector<INeighbour*> m_active;
    Ref<Application> m_application;
    Ref<IApplication> m_applicationView;
    const AddInHost* m_served = nullptr; ///< nothing while none is
    LockWaitDialog m_lockWait;           ///< outlives the database
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    QString m_databasePath;
    HostDataHelper m_dataHelper;
    Ref<IUser> m_currentUser;
    QString m_databaseFolder;
    QString m_templateFolder;
    std::array<bool, 5> m_switches{};
    ShownReminders m_reminders;
    ReplacedFile m_replacedFile{*this, m_active};
};

} // namespace yrw
