#include "addin/NotesOpening.h"

#include "addin/BusySign.h"
#include "addin/HostQuestions.h"
#include "addin/INeighbour.h"
#include "framework/ErrorGuards.h"
#include "platform/files/FileSystem.h"
#include "store/MarkSettings.h"
#include "store/NotesDatabase.h"

namespace yrw {

void NotesOpening::OpenDatabase() {
    const Services& services = m_module.services();
    const BusySign busy(services.prompt, m_host, QStringLiteral("Opening Database..."));
    reportErrors(services.utility, QStringLiteral("YRWNOTES.AddIn.OpenDatabase"),
                 QStringLiteral("Could Not Notes Open Database"),
                 QStringLiteral("Database Problem"), [this] { openDatabaseOfHost(); });
    if (m_module.isDatabaseOpen()) {
        m_highlightColour = readHighlightColour(m_module.dataHelper());
    }
}

void NotesOpening::openDatabaseOfHost() {
    const Ref<IHostApplication> host = m_host.requiredApplication();
    const Ref<dao::Workspace> workspace =
        askedOfHost(u"workspace", [&] { return host->DAOWorkspace(); });
    const QString folder = m_host.folder();
    const FileSystem& files = m_module.services().files;
    const QString path = FileSystem::join(folder, kNotesDatabaseName);

    if (!files.fileExists(path) || !m_module.isOpenAt(files.resolve(path))) {
        m_module.closeDatabase();
        m_module.setDatabaseFolder(folder);
        m_oldFormat.finish(folder);
        if (!files.fileExists(path) && !CreateNotesDatabase(path)) {
            return;
        }
        if (!openUnlessOld(workspace, folder, path)) {
            if (m_oldFormat.convert(folder)) {
                openDatabaseOfHost();
            }
            return;
        }
    }
    takeUserNames();
    m_module.setCurrentUser(m_host.requiredUser()); // who stamps what is written
    // Without it, notes on records are neither found nor marked.
    m_host.requireProgID();
}

/// False, and nothing is open, when the notes database is of the older format.
bool NotesOpening::openUnlessOld(const Ref<dao::Workspace>& workspace, const QString& folder,
                                 const QString& path) {
    try {
        m_module.openDatabase(workspace, m_module.services().files.resolve(path));
        return true;
    } catch (const AutomationError& error) {
        if (error.number() != kErrorNotADatabase || !m_oldFormat.isAt(folder)) {
            throw;
        }
        m_module.closeDatabase();
        return false;
    }
}

/// Offers to make the notes database from the template. True when it is there afterwards, made
/// here or by somebody else while the question was on screen.
bool NotesOpening::CreateNotesDatabase(const QString& path) {
    const PromptAnswer answer = m_module.services().prompt.question(
        QStringLiteral("There is not a Notes database in the current database directory.\r\r"
                       "Would you like to create a new Notes database now?"),
        QStringLiteral("New Notes Database"), PromptButtons::YesNo, PromptIcon::Question,
        PromptAnswer::Yes);
    if (answer != PromptAnswer::Yes) {
        return false;
    }
    createNotesDatabase(m_module.services().files, m_module.templateFolder(),
                        HostUtility::FolderOfPath(path));
    return true;
}

/// Remembers the names of the host's users; without them, authors show by their codes.
void NotesOpening::takeUserNames() {
    ignoreErrors([this] {
        refreshUserNames(*m_module.database(), userNamesOf(m_host.requiredApplication()->Users()));
    });
}

bool NotesOpening::mayOpen(const INeighbour* first) {
    QString folder;
    ignoreErrors([&] { folder = m_host.folder(); });
    const QString path =
        m_module.services().files.resolve(FileSystem::join(folder, kNotesDatabaseName));
    if (folder.isEmpty() || first == nullptr || !m_module.isDatabaseOpen() ||
        m_module.isOpenAt(path)) {
        return true;
    }
    QString host = first->host().progID();
    ignoreErrors([&] { host = first->host().component->Application()->Name(); });
    m_module.services().prompt.message(
        QStringLiteral("%1 works with the notes in %2 already.\r\rThe notes in %3 can be opened "
                       "when those are closed.")
            .arg(host, m_module.databaseFolder(), folder),
        QStringLiteral("Notes Problem"), PromptIcon::Exclamation);
    return false;
}

} // namespace yrw
