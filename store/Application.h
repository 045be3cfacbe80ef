#pragma once

#include "store/Collections.h"

namespace yrw {

/// The store's entry object: answers what it can from the notes database and the host, returns
/// nothing for some members and refuses the rest with `kErrorNotSupported`.
///
/// One exists in a process, kept by the add-in.
/// Lifetime: counted; its end terminates, as `Terminate` does.
/// Thread: the user-interface thread.
class Application final : public virtual IApplication {
public:
    explicit Application(StoreContext& context);

    /// A fresh collection of notes with this object as parent: those kept on no record.
    [[nodiscard]] Ref<yrw::Notes> Notes();
    [[nodiscard]] Ref<yrw::Reminders> Reminders();
    /// The first row of the system settings, cached until it is asked to refresh.
    [[nodiscard]] Ref<IRecord> ActiveSystemSettings(bool refresh);

    void OpenDatabase(const QString& path) override;
    [[nodiscard]] Ref<dao::Database> DAODatabase() override;
    [[nodiscard]] Ref<dao::Workspace> DAOWorkspace() override;
    [[nodiscard]] QString Version() override;
    [[nodiscard]] Ref<yrw::ICollection> SystemSettings() override;
    [[nodiscard]] HostDataHelper* DB() override;
    [[nodiscard]] QStringList ObjectKeys() override;
    [[nodiscard]] Ref<yrw::ICollection> Reports() override;
    bool Login(const QString& code, const QString& password) override;
    [[nodiscard]] Ref<IUser> CurrentUser() override;
    void setCurrentUser(const Ref<IUser>& user) override;
    [[nodiscard]] Ref<IUser> CurrentIUser() override;
    void SetupODBC() override;
    [[nodiscard]] Ref<IRecord> CurrentSettings(bool refresh) override;
    [[nodiscard]] QString Name() override;
    [[nodiscard]] QString ODBCDSNPath() override;
    [[nodiscard]] QString ProgID() override;
    [[nodiscard]] Ref<ISession> Session() override;
    [[nodiscard]] QString DSNName() override;
    void Terminate() override;
    [[nodiscard]] Ref<yrw::ICollection> ICollection(const QString& name) override;
    [[nodiscard]] Ref<yrw::ICollection> Users() override;
    [[nodiscard]] Ref<yrw::ICollection> ObjectKeyPolicies() override;
    [[nodiscard]] Ref<yrw::ICollection> ObjectKeyPolicyPermissions() override;
    bool CanUserAccessICollection(const Ref<yrw::ICollection>& collection) override;
    bool CanUserEditIRecord(const Ref<IRecord>& record) override;
    bool CanUserAccessICollectionDelete(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionRecordset(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionItems(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionAdd(const Ref<yrw::ICollection>& collection) override;
    [[nodiscard]] Ref<dao::Database> XDatabase() override;

private:
    ~Application() override;

    StoreContext& m_context;
    Ref<IRecord> m_activeSettings;
};

} // namespace yrw
