#include "addin/Module1.h"

#include "addin/AddInHost.h"
#include "addin/INeighbour.h"
#include "framework/ErrorGuards.h"
#include "framework/Settings.h"
#include "framework/SettingsWatch.h"
#include "platform/clock/Clock.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/SettingsStore.h"
#include "store/NotesDatabase.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <dlfcn.h>

namespace yrw {

/// What one composition of the component is made of.
struct Module1::World {
    World(Clock& clock, Prompt& prompt)
        : utility(prompt), services{clock, settings, files, prompt, utility},
          watch(settings, clock, prompt, QStringLiteral("Notes Problem")) {}

    SettingsStore settings;
    FileSystem files;
    HostUtility utility;
    Services services;
    SettingsWatch watch;
    std::vector<Connection> followed; ///< settings that switches follow
};

namespace {

struct SwitchKey {
    NotesSwitch which;
    const setting::Flag* setting;
};

/// In the order in which they are read.
constexpr std::array<SwitchKey, 5> kSwitchKeys{{
    {NotesSwitch::CheckAutoNotes, &setting::kCheckAutoNotes},
    {NotesSwitch::CheckForReminders, &setting::kCheckForReminders},
    {NotesSwitch::FlagNotesRow, &setting::kFlagNotesRow},
    {NotesSwitch::HighlightNotesRow, &setting::kHighlightNotesRow},
    {NotesSwitch::ShowPopupWindow, &setting::kShowPopupWindow},
}};

bool servesSameHost(const INeighbour& one, const INeighbour& other) {
    const IHostComponent* const component = one.host().component.get();
    return component != nullptr && component == other.host().component.get();
}

bool isMark(NotesSwitch which) {
    return which == NotesSwitch::FlagNotesRow || which == NotesSwitch::HighlightNotesRow;
}

} // namespace

Module1::Module1() = default;
Module1::~Module1() = default;

Module1& Module1::instance() {
    static Module1* const module = new Module1;
    return *module;
}

void Module1::add(INeighbour& addIn) {
    if (m_addIns.empty()) {
        m_world = std::make_unique<World>(Clock::instance(), Prompt::instance());
        m_world->utility.setTeller(
            [this](const AutomationError& error) { return m_replacedFile.tellsOf(error); });
        followSettings();
    }
    m_addIns.push_back(&addIn);
}

void Module1::remove(INeighbour& addIn) noexcept {
    letGo(addIn);
    std::erase(m_addIns, &addIn);
}

bool Module1::InitialiseOLEServers() {
    try {
        if (!m_application) {
            m_application = make<Application>(*this);
        }
        m_applicationView = m_application;
        return true;
    } catch (...) {
        services().utility.ReportError(
            currentError(), QStringLiteral("YRWNOTES.InitialiseOLEServers"),
            QStringLiteral("Could not Initialise"), QStringLiteral("Initialise Problem"),
            QStringLiteral("There was a problem initialising."));
        return false;
    }
}

Services& Module1::services() {
    return m_world->services;
}

Application& Module1::application() {
    if (!m_application) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.Module1"),
                              QStringLiteral("The notes are not open."));
    }
    return *m_application;
}

SettingsWatch& Module1::settingsWatch() {
    return m_world->watch;
}

void Module1::activated(INeighbour& addIn) {
    m_applicationView = m_application;
    if (std::find(m_active.begin(), m_active.end(), &addIn) == m_active.end()) {
        m_active.push_back(&addIn);
        m_replacedFile.start();
    }
}

bool Module1::isBehind(const INeighbour& addIn) const noexcept {
    const auto self = std::find(m_active.begin(), m_active.end(), &addIn);
    return std::any_of(m_active.begin(), self,
                       [&](const INeighbour* other) { return servesSameHost(*other, addIn); });
}

bool Module1::isSharedToolbar(const INeighbour& addIn, const IToolbar* toolbar) const noexcept {
    return std::any_of(m_active.begin(), m_active.end(), [&](const INeighbour* other) {
        return other != &addIn && other->hasToolIn(toolbar);
    });
}

INeighbour* Module1::otherActive(const INeighbour& addIn) const noexcept {
    const auto other = std::find_if(m_active.begin(), m_active.end(),
                                    [&](const INeighbour* each) { return each != &addIn; });
    return other == m_active.end() ? nullptr : *other;
}

bool Module1::isOpenAt(const QString& path) {
    const QString file = QFileInfo(path).canonicalFilePath();
    return isDatabaseOpen() &&
           (m_databasePath == path ||
            (!file.isEmpty() && file == QFileInfo(m_databasePath).canonicalFilePath()));
}

void Module1::letGo(INeighbour& addIn) noexcept {
    std::erase(m_active, &addIn);
    if (!m_active.empty()) {
        return;
    }
    m_replacedFile.stop();
    ignoreErrors([this] {
        if (m_application) {
            m_application->Terminate();
        }
    });
    closeDatabase();
    m_applicationView.reset();
}

void Module1::serve(const AddInHost& host) noexcept {
    if (host.component) {
        m_served = &host;
    }
}

void Module1::hostTaken(const INeighbour& addIn) noexcept {
    if (otherActive(addIn) == nullptr) {
        serve(addIn.host()); // else that one goes on until this one is activated
    }
}

void Module1::hostLeft(const INeighbour& addIn) noexcept {
    const IHostComponent* const served = m_served ? m_served->component.get() : nullptr;
    if (served == nullptr || served == addIn.host().component.get()) {
        m_served = nullptr;
        if (const INeighbour* const other = otherActive(addIn)) {
            serve(other->host());
        }
    }
}

void Module1::openDatabase(const Ref<dao::Workspace>& workspace, const QString& path) {
    closeDatabase();
    m_workspace = workspace;
    m_database = openNotesDatabase(m_dataHelper, workspace, path);
    m_database->setLockWatch(&m_lockWait);
    m_databasePath = path;
    m_replacedFile.forget();
    for (INeighbour* addIn : std::vector<INeighbour*>(m_active)) {
        addIn->databaseOpened();
    }
}

void Module1::setCurrentUser(const Ref<IUser>& user) {
    m_currentUser = user;
    m_dataHelper.setCurrentUserID(user ? user->value(QStringLiteral("RecordID")).toLongLong() : 0);
    m_dataHelper.setCurrentUserCode(user ? user->value(QStringLiteral("Code")).toString()
                                         : QString());
}

void Module1::loadSwitches() {
    const NotesSettings settings(services().settings);
    for (const SwitchKey& entry : kSwitchKeys) {
        setSwitch(entry.which, settings.get(*entry.setting));
    }
}

void Module1::followSettings() {
    const NotesSettings settings(services().settings);
    for (const SwitchKey& entry : kSwitchKeys) {
        m_world->followed.push_back(settings.whenSet(
            *entry.setting, [this, which = entry.which](bool on) { setSwitch(which, on); }));
    }
}

void Module1::setSwitch(NotesSwitch which, bool on) {
    const bool wasOn = std::exchange(m_switches[static_cast<std::size_t>(which)], on);
    if (on != wasOn && isMark(which)) {
        for (INeighbour* addIn : std::vector<INeighbour*>(m_addIns)) {
            addIn->marksSwitched(on);
        }
    }
}

QString Module1::componentFile() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    return QFileInfo(QFile::decodeName(info.dli_fname)).absoluteFilePath();
}

Ref<dao::Database> Module1::database() {
    return isDatabaseOpen() ? m_database : nullptr;
}

bool Module1::isDatabaseOpen() {
    return m_database && m_database->isOpen();
}

Ref<IHostApplication> Module1::hostApplication() {
    return m_served != nullptr ? m_served->application() : nullptr;
}

QString Module1::hostProgID() {
    return m_served != nullptr ? m_served->progID() : QString();
}

Clock& Module1::clock() {
    return services().clock;
}

QString Module1::version() {
    return QStringLiteral("%1.%2.%3")
        .arg(YRW_VERSION_MAJOR)
        .arg(YRW_VERSION_MINOR)
        .arg(YRW_VERSION_REVISION);
}

QString Module1::templateFolder() {
    if (!m_templateFolder.isEmpty()) {
        return m_templateFolder;
    }
    return FileSystem::join(FileSystem::folderOf(componentFile()), QStringLiteral("DB/YRWNOTES"));
}

void Module1::closeDatabase() {
    const Ref<dao::Database> database = std::exchange(m_database, nullptr);
    const Ref<dao::Workspace> workspace = std::exchange(m_workspace, nullptr);
    ignoreErrors([this] { setCurrentUser(nullptr); }); // the next to open may be somebody else
    ignoreErrors([this] { m_dataHelper.setDatabase(nullptr); });
    ignoreErrors([&] {
        if (database) {
            database->Close();
        }
    });
    ignoreErrors([&] {
        if (workspace) {
            workspace->Close();
        }
    });
}

} // namespace yrw
