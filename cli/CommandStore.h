#pragma once

#include "cli/NotesHost.h"
#include "store/Application.h"
#include "store/NotesDatabase.h"

namespace yrw {

/// The store's world for one command: the host's database and the notes database of a data folder.
///
/// A folder that has notes but no host database of the kind that the command knows is served with
/// the users that the notes remember, without groups and records.
/// Lifetime: one command; closes the notes database at its end. All that it hands out must be gone
/// before.
class CommandStore final : public StoreContext {
public:
    /// Opens both databases as the user. Raises what opening raises, naming the file;
    /// `kErrorRecordNotFound` for an unknown user.
    CommandStore(const dao::EngineServices& engine, const QString& folder, const QString& userCode);
    ~CommandStore() override;

    [[nodiscard]] Application& application() { return *m_application; }
    /// True when the folder holds the host's database too.
    [[nodiscard]] bool hasHostDatabase() const noexcept { return m_notesHost == nullptr; }
    /// Raises `kErrorObjectRequired` without the host's database; `what` needs it, e.g. "A group".
    void requireHostDatabase(const QString& what) const;
    /// Raises `kErrorObjectRequired` when nobody is known to work.
    void requireUser();
    /// Raises `kErrorObjectRequired` when the notes cannot tell which host is theirs.
    void requireOneHost() const;
    /// Users of the host, or those that the notes remember.
    [[nodiscard]] QList<UserName> users();
    [[nodiscard]] QString notesPath() const { return m_notesPath; }
    /// The files of both databases, with those that the engine keeps beside them.
    [[nodiscard]] QStringList databaseFiles() const;

    [[nodiscard]] Ref<dao::Workspace> workspace() override { return m_workspace; }
    [[nodiscard]] Ref<dao::Database> database() override { return m_database; }
    [[nodiscard]] bool isDatabaseOpen() override { return m_database != nullptr; }
    [[nodiscard]] Ref<IHostApplication> hostApplication() override { return m_host; }
    [[nodiscard]] QString hostProgID() override { return m_host->ProgID(); }
    [[nodiscard]] Ref<IUser> currentUser() override { return m_host->CurrentIUser(); }
    [[nodiscard]] HostDataHelper& dataHelper() override { return m_helper; }
    [[nodiscard]] Clock& clock() override { return m_engine.clock; }
    [[nodiscard]] QString version() override { return m_host->Version(); }
    [[nodiscard]] QString databaseFolder() override { return m_folder; }
    [[nodiscard]] QString templateFolder() override { return {}; }
    void closeDatabase() override;

private:
    void becomeUser();

    dao::EngineServices m_engine;
    QString m_folder;
    QString m_notesPath;
    Ref<IHostApplication> m_host;
    Ref<NotesHost> m_notesHost; ///< the same, where there is no host database
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
    Ref<Application> m_application;
};

} // namespace yrw
