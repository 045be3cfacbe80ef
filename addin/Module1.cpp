#include "addin/Module1.h"

#include "addin/AddIn.h"
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
        : utility(prompt), services{clock, settings, files, utility},
          watch(settings, clock, prompt, QStringLiteral("Notes Problem")) {}

    SettingsStore settings;
    FileSystem files;
    HostUtility utility;
    Services services;
    SettingsWatch watch;
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

bool servesSameHost(const AddIn& one, const AddIn& other) {
    return one.Component() != nullptr && one.Component() == other.Component();
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

void Module1::add(AddIn& addIn) {
    if (m_addIns.empty()) {
        m_world = std::make_unique<World>(Clock::instance(), Prompt::instance());
        m_world->utility.setTeller(
            [this](const AutomationError& error) { return m_replacedFile.tellsOf(error); });
    }
    m_addIns.push_back(&addIn);
}

void Module1::remove(AddIn& addIn) noexcept {
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

SettingsWatch& Module1::settingsWatch() {
    return m_world->watch;
}

void Module1::activated(AddIn& addIn) {
    m_applicationView = m_application;
    if (std::find(m_active.begin(), m_active.end(), &addIn) == m_active.end()) {
        m_active.push_back(&addIn);
        m_replacedFile.start();
    }
}

bool Module1::isBehind(const AddIn& addIn) const noexcept {
    const auto self = std::find(m_active.begin(), m_active.end(), &addIn);
    return std::any_of(m_active.begin(), self,
                       [&](const AddIn* other) { return servesSameHost(*other, addIn); });
}

bool Module1::isSharedToolbar(const AddIn& addIn, const IToolbar* toolbar) const noexcept {
    return std::any_of(m_active.begin(), m_active.end(), [&](const AddIn* other) {
        return other != &addIn && other->hasToolIn(toolbar);
    });
}

AddIn* Module1::otherActive(const AddIn& addIn) const noexcept {
    const auto other = std::find_if(m_active.begin(), m_active.end(),
                                    [&](const AddIn* each) { return each != &addIn; });
    return other == m_active.end() ? nullptr : *other;
}

bool Module1::isOpenAt(const QString& path) {
    const QString file = QFileInfo(path).canonicalFilePath();
    return isDatabaseOpen() &&
           (m_databasePath == path ||
            (!file.isEmpty() && file == QFileInfo(m_databasePath).canonicalFilePath()));
}

void Module1::letGo(AddIn& addIn) noexcept {
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

void Module1::setHost(IHostComponent* component, const QString& progID) {
    m_component = component;
    m_hostProgID = progID;
}

void Module1::dropHost(const AddIn& addIn) noexcept {
    if (!m_component || m_component.get() == addIn.Component()) {
        m_component.reset();
        m_hostProgID.clear();
        if (AddIn* const other = otherActive(addIn)) {
            other->becomeServed();
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
    for (AddIn* addIn : std::vector<AddIn*>(m_active)) {
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

void Module1::setSwitch(NotesSwitch which, bool on) {
    bool& stored = m_switches[static_cast<std::size_t>(which)];
    const bool goesOn = on && !stored;
    stored = on;
    if (goesOn && isMark(which)) {
        for (AddIn* addIn : std::vector<AddIn*>(m_addIns)) {
            addIn->marksSwitchedOn();
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
    return m_component ? m_component->Application() : nullptr;
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
