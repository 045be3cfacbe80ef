#pragma once

#include "framework/HostApplicationBase.h"
#include "framework/HostDataHelper.h"

namespace yrw {

/// Stands in for a host whose database is not at hand: has the users whose names the notes database
/// remembers, with neither groups nor records.
///
/// Lifetime: counted; database and helper are the notes database's own and outlive it.
/// Thread: the user-interface thread.
class NotesHost final : public HostApplicationBase {
public:
    /// Works as the user with that code, in any case; empty: the first by code, or nobody where no
    /// user is known. Raises `kErrorRecordNotFound` for an unknown one, naming those there are.
    NotesHost(Ref<dao::Database> database, HostDataHelper& helper, const QString& userCode);

    [[nodiscard]] Ref<dao::Database> DAODatabase() override;
    [[nodiscard]] Ref<dao::Workspace> DAOWorkspace() override; ///< nothing
    [[nodiscard]] QString Version() override;
    [[nodiscard]] HostDataHelper* DB() override;
    /// Nothing where no user is known.
    [[nodiscard]] Ref<IUser> CurrentUser() override;
    void setCurrentUser(const Ref<IUser>& user) override;
    [[nodiscard]] QString Name() override;
    /// The program id that the notes of records carry; empty when they carry none or several.
    [[nodiscard]] QString ProgID() override;
    void Terminate() override;
    [[nodiscard]] Ref<yrw::ICollection> Users() override;

    /// Every program id that notes of records carry.
    [[nodiscard]] QStringList hostProgIDs() const;

private:
    Ref<dao::Database> m_database;
    HostDataHelper& m_helper;
    qint64 m_userID = 0;
};

} // namespace yrw
