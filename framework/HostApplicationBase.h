#pragma once

#include "framework/IApplication.h"

namespace yrw {

/// Base of a host's application object: answers what most hosts have nothing to say about.
///
/// A derived class supplies its database (`DAODatabase`, `DAOWorkspace`, `DB`), its users (`Users`,
/// `CurrentUser`, `setCurrentUser`), its name and version, and the kinds of record that it has.
/// What it leaves out here is answered as each member says; "not supported" raises
/// `kErrorNotSupported` with the program id and the member as source.
/// Lifetime: counted. Thread: the user-interface thread.
class HostApplicationBase : public virtual IHostApplication {
public:
    void OpenDatabase(const QString& path) override;               ///< not supported
    [[nodiscard]] Ref<yrw::ICollection> SystemSettings() override; ///< not supported
    [[nodiscard]] QStringList ObjectKeys() override;               ///< as `ObjectDefinitionKeys`
    [[nodiscard]] Ref<yrw::ICollection> Reports() override;        ///< of `CreateReports`
    bool Login(const QString& code, const QString& password) override; ///< not supported
    [[nodiscard]] Ref<IUser> CurrentIUser() override;                  ///< as `CurrentUser`
    void SetupODBC() override;                                         ///< not supported
    [[nodiscard]] Ref<IRecord> CurrentSettings(bool refresh) override; ///< not supported
    [[nodiscard]] QString ODBCDSNPath() override;                      ///< not supported
    [[nodiscard]] Ref<ISession> Session() override;                    ///< of `CurrentUser`
    [[nodiscard]] QString DSNName() override;                          ///< empty
    [[nodiscard]] Ref<yrw::ICollection> ICollection(const QString& name) override; ///< nothing
    [[nodiscard]] Ref<yrw::ICollection> ObjectKeyPolicies() override;              ///< nothing
    [[nodiscard]] Ref<yrw::ICollection> ObjectKeyPolicyPermissions() override;     ///< nothing
    // Everybody may do everything.
    bool CanUserAccessICollection(const Ref<yrw::ICollection>& collection) override;
    bool CanUserEditIRecord(const Ref<IRecord>& record) override;
    bool CanUserAccessICollectionDelete(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionRecordset(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionItems(const Ref<yrw::ICollection>& collection) override;
    bool CanUserAccessICollectionAdd(const Ref<yrw::ICollection>& collection) override;
    [[nodiscard]] Ref<dao::Database> XDatabase() override; ///< not supported
    [[nodiscard]] Ref<IObjectDefinition>
    ObjectDefinition(const QString& objectKey) override;                      ///< nothing
    [[nodiscard]] QStringList ObjectDefinitionKeys() override;                ///< none
    [[nodiscard]] QString ObjectDisplayName(const QString& useName) override; ///< the name itself
    [[nodiscard]] QString UserName(const QString& code) override;             ///< the code itself
    bool ShowHelp(int topic) override;                                        ///< false
    [[nodiscard]] Ref<yrw::ICollection> CreateReports() override;             ///< nothing

private:
    [[noreturn]] void refuse(const char* member);
};

} // namespace yrw
