// Opening the notes database, and offering to make one.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "framework/ErrorGuards.h"
#include "platform/files/FileSystem.h"
#include "platform/forms/Form.h"
#include "store/NotesDatabase.h"

namespace yrw {

namespace {

const QString kOpenSource = QStringLiteral("YRWNOTES.AddIn.OpenDatabase");

template <class T>
Ref<T> required(const Ref<T>& object, const char16_t* what) {
    if (!object) {
        throw AutomationError(kErrorObjectRequired, kOpenSource,
                              QStringLiteral("The host has no %1.").arg(what));
    }
    return object;
}

} // namespace

void AddIn::OpenDatabase() {
    const BusySign busy(prompt(), m_interface, QStringLiteral("Opening Database..."));
    reportErrors(services().utility, kOpenSource, QStringLiteral("Could Not Notes Open Database"),
                 QStringLiteral("Database Problem"), [this] { openDatabaseOfHost(); });
    if (m_module.isDatabaseOpen()) {
        m_highlightColour = 0;
        ignoreErrors([this] { readHighlightColour(); });
        if (m_highlightColour == 0) {
            m_highlightColour = schema::kDefaultHighlight;
        }
    }
}

void AddIn::openDatabaseOfHost() {
    const Ref<IHostApplication> host =
        required(m_component ? m_component->Application() : nullptr, u"application");
    const Ref<dao::Workspace> workspace = required(host->DAOWorkspace(), u"workspace");
    const QString hostDatabase = required(host->DAODatabase(), u"database")->Name();
    const QString folder = HostUtility::FolderOfPath(hostDatabase);
    const FileSystem& files = services().files;
    const QString path = files.resolve(FileSystem::join(folder, kNotesDatabaseName));

    const bool isThere = files.fileExists(path);
    if (!isThere || !m_module.isOpenAt(path)) {
        m_module.closeDatabase();
        m_module.setDatabaseFolder(folder);
        if (!isThere && !CreateNotesDatabase(path)) {
            return;
        }
        m_module.openDatabase(workspace, path);
    }
    takeCurrentUser();
}

/// Offers to make the notes database from the template; true when it was made.
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

/// Stamps what is written with the host's user, and remembers the names of all its users.
void AddIn::takeCurrentUser() {
    const Ref<IHostApplication> host = m_component->Application();
    m_module.setCurrentUser(required(host->CurrentUser(), u"current user"));
    // Without the names, authors show by their codes.
    ignoreErrors([&] { refreshUserNames(*m_module.database(), userNamesOf(host->Users())); });
}

/// Goes on with what lies at the database's place now, when that is another file and the user
/// agrees. Waits until no window or box is open.
void AddIn::leaveReplacedDatabase(bool again) {
    if (isNotesWindowOpen() || Form::isModalOpen() ||
        !m_replacedFile.isToBeLeft(notesDatabase(), prompt(), again)) {
        return;
    }
    m_module.closeDatabase();
    OpenDatabase();
    m_replacedFile.forget();
    repaintGrids();
}

void AddIn::readHighlightColour() {
    const Ref<dao::Recordset> settings =
        dataHelper().OpenRecordset(QStringLiteral("SELECT tblSettings.* FROM tblSettings"));
    if (!settings->AtEof()) {
        m_highlightColour = settings->value(u"HighlightRowColour").toInt();
    }
    settings->Close();
}

} // namespace yrw
