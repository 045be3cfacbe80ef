#include "cli/CommandStore.h"

#include "framework/ErrorGuards.h"
#include "host/core/DeskApplication.h"
#include "platform/component/AutomationError.h"
#include "platform/files/FileSystem.h"

#include <QFileInfo>

namespace yrw {

namespace {

[[noreturn]] void raiseMissing(const QString& text) {
    throw AutomationError(kErrorObjectRequired, QStringLiteral("yrwnotes"), text);
}

} // namespace

CommandStore::CommandStore(const dao::EngineServices& engine, const QString& folder,
                           const QString& userCode)
    : m_engine(engine), m_folder(engine.files.resolve(folder)),
      m_notesPath(engine.files.resolve(FileSystem::join(m_folder, kNotesDatabaseName))) {
    if (!engine.files.fileExists(m_notesPath)) {
        throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("yrwnotes"),
                              QStringLiteral("There is no notes database %1.").arg(m_notesPath));
    }
    if (QFileInfo::exists(deskDatabasePath(m_folder))) {
        DeskStart start;
        start.folder = m_folder;
        start.userCode = userCode;
        start.createMissing = false;
        m_host = DeskApplication::open(m_engine, start);
    }
    m_workspace = dao::createWorkspace(m_engine);
    m_database = openNotesDatabase(m_helper, m_workspace, m_notesPath);
    if (!m_host) {
        m_notesHost = make<NotesHost>(m_database, m_helper, userCode);
        m_host = m_notesHost;
    }
    becomeUser();
    m_application = make<Application>(*this);
}

CommandStore::~CommandStore() {
    if (m_application) {
        m_application->Terminate();
    }
}

void CommandStore::becomeUser() {
    if (const Ref<IUser> user = currentUser()) {
        m_helper.setCurrentUserID(user->value(QStringLiteral("RecordID")).toLongLong());
        m_helper.setCurrentUserCode(user->value(QStringLiteral("Code")).toString());
    }
    if (hasHostDatabase()) {
        // Names are a convenience: a database that is busy just now is no reason to stop.
        ignoreErrors([this] { refreshUserNames(*m_database, userNamesOf(m_host->Users())); });
    }
}

void CommandStore::requireHostDatabase(const QString& what) const {
    if (!hasHostDatabase()) {
        raiseMissing(QStringLiteral("%1 needs the host's database, and there is no %2.")
                         .arg(what, deskDatabasePath(m_folder)));
    }
}

void CommandStore::requireUser() {
    if (!currentUser()) {
        raiseMissing(
            QStringLiteral("%1 knows no users yet; open it with its host once.").arg(m_notesPath));
    }
}

void CommandStore::requireOneHost() const {
    const QStringList hosts = hasHostDatabase() ? QStringList() : m_notesHost->hostProgIDs();
    if (hosts.size() > 1) {
        raiseMissing(
            QStringLiteral("%1 holds notes of several hosts (%2); which is meant, only the host's "
                           "database can tell, and there is no %3.")
                .arg(m_notesPath, hosts.join(QStringLiteral(", ")), deskDatabasePath(m_folder)));
    }
}

QList<UserName> CommandStore::users() {
    return hasHostDatabase() ? userNamesOf(m_host->Users()) : rememberedUsers(*m_database);
}

QStringList CommandStore::databaseFiles() const {
    QStringList files;
    for (const QString& path : {m_notesPath, deskDatabasePath(m_folder)}) {
        for (const char* const suffix : {"", "-wal", "-shm", "-journal"}) {
            files += path + QLatin1String(suffix);
        }
    }
    return files;
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
