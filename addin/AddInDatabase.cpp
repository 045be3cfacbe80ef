// Opening the notes database, and offering to make one.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "addin/HostQuestions.h"
#include "framework/ErrorGuards.h"
#include "platform/files/FileSystem.h"
#include "store/MarkSettings.h"
#include "store/NotesDatabase.h"

namespace yrw {

namespace {

const QString kOpenSource = QStringLiteral("YRWNOTES.AddIn.OpenDatabase");

} // namespace

void AddIn::OpenDatabase() {
    const BusySign busy(prompt(), m_interface, QStringLiteral("Opening Database..."));
    reportErrors(services().utility, kOpenSource, QStringLiteral("Could Not Notes Open Database"),
                 QStringLiteral("Database Problem"), [this] { openDatabaseOfHost(); });
    if (m_module.isDatabaseOpen()) {
        m_highlightColour = readHighlightColour(dataHelper());
    }
}

Ref<IHostApplication> AddIn::requiredHost() const {
    return askedOfHost(u"application", [this] {
        return m_component ? m_component->Application() : Ref<IHostApplication>();
    });
}

/// The folder of the host's database, where its notes belong.
QString AddIn::folderOfHost() const {
    const Ref<IHostApplication> host = requiredHost();
    return HostUtility::FolderOfPath(
        askedOfHost(u"database", [&] { return host->DAODatabase(); })->Name());
}

void AddIn::openDatabaseOfHost() {
    const Ref<IHostApplication> host = requiredHost();
    const Ref<dao::Workspace> workspace =
        askedOfHost(u"workspace", [&] { return host->DAOWorkspace(); });
    const QString folder = folderOfHost();
    const FileSystem& files = services().files;
    const QString path = FileSystem::join(folder, kNotesDatabaseName);

    const bool isThere = files.fileExists(path);
    if (!isThere || !m_module.isOpenAt(files.resolve(path))) {
        m_module.closeDatabase();
        m_module.setDatabaseFolder(folder);
        if (!isThere && !CreateNotesDatabase(path)) {
            return;
        }
        m_module.openDatabase(workspace, files.resolve(path));
    }
    takeUserNames();
    takeCurrentUser();
    takeProgramId(*host);
}

/// Whose notes these are. Without it those on records are neither found nor marked.
void AddIn::takeProgramId(IHostApplication& host) {
    if (m_hostProgID.isEmpty()) { // not given with the component; it may be by now
        ignoreErrors([&] { m_hostProgID = host.ProgID(); });
        becomeServed();
    }
    if (m_hostProgID.isEmpty()) {
        throw AutomationError(kErrorObjectRequired, kOpenSource,
                              QStringLiteral("The host has no program id."));
    }
}

/// Offers to make the notes database from the template. True when it is there afterwards, made
/// here or by somebody else while the question was on screen.
bool AddIn::CreateNotesDatabase(const QString& path) {
    const PromptAnswer answer = prompt().question(
        QStringLiteral("There is not a Notes database in the current database directory.\r\r"
                       "Would you like to create a new Notes database now?"),
        QStringLiteral("New Notes Database"), PromptButtons::YesNo, PromptIcon::Question,
        PromptAnswer::Yes);
    if (answer != PromptAnswer::Yes) {
        return false;
    }
    createNotesDatabase(services().files, m_module.templateFolder(),
                        HostUtility::FolderOfPath(path));
    return true;
}

/// Stamps what is written with the host's user.
void AddIn::takeCurrentUser() {
    const Ref<IHostApplication> host = requiredHost();
    (void)askedOfHost(u"current user", [&] {
        const Ref<IUser> user = host->CurrentUser();
        if (user) {
            m_module.setCurrentUser(user);
        }
        return user;
    });
}

/// Remembers the names of the host's users; without them, authors show by their codes.
void AddIn::takeUserNames() {
    ignoreErrors(
        [this] { refreshUserNames(*m_module.database(), userNamesOf(requiredHost()->Users())); });
}

void AddIn::goOnWithFileThere() {
    m_module.closeDatabase();
    OpenDatabase();
    repaintGrids();
}

} // namespace yrw
