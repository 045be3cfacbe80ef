#include "cli/CommandStore.h"

#include "framework/ErrorGuards.h"
#include "host/core/DeskApplication.h"
#include "platform/component/AutomationError.h"
#include "platform/files/FileSystem.h"

#include <QFileInfo>

namespace yrw {

CommandStore::CommandStore(const dao::EngineServices& engine, const QString& folder,
                           const QString& userCode)
    : m_engine(engine), m_folder(engine.files.resolve(folder)),
      m_notesPath(engine.files.resolve(FileSystem::join(m_folder, kNotesDatabaseName))) {
    if (!engine.files.fileExists(m_notesPath)) {
        throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("yrwnotes"),
                              QStringLiteral("There is no notes database %1.").arg(m_notesPath));
    }
    openHost(userCode);
    openNotes();
    m_application = make<Application>(*this);
}

CommandStore::~CommandStore() {
    if (m_application) {
        m_application->Terminate();
    }
}

void CommandStore::openHost(const QString& userCode) {
    DeskStart start;
    start.folder = m_folder;
    start.userCode = userCode;
    start.createMissing = false;
    if (!QFileInfo::exists(deskDatabasePath(m_folder))) {
        m_standIn.emplace();
        start.folder = m_standIn->path();
        start.customers = 0;
        start.createMissing = true;
    }
    m_host = DeskApplication::open(m_engine, start);
}

void CommandStore::openNotes() {
    m_workspace = m_host->DAOWorkspace();
    m_database = openNotesDatabase(m_helper, m_workspace, m_notesPath);
    const Ref<IUser> user = currentUser();
    m_helper.setCurrentUserID(user->value(QStringLiteral("RecordID")).toLongLong());
    m_helper.setCurrentUserCode(user->value(QStringLiteral("Code")).toString());
    if (hasHostDatabase()) {
        // Names are a convenience: a database that is busy just now is no reason to stop.
        ignoreErrors([this] { refreshUserNames(*m_database, userNamesOf(m_host->Users())); });
    }
}

void CommandStore::closeDatabase() {
    if (m_database) {
        m_database->Close();
        m_database.reset();
    }
    if (m_workspace) {
        m_workspace->Close();
        m_workspace.reset();
    }
}

} // namespace yrw
