#pragma once

#include "framework/ICollection.h"
#include "platform/dao/Database.h"

namespace yrw {

class HostDataHelper;

/// A user of the host. Its record has at least `RecordID`, `Code`, `FirstName`, `LastName`,
/// `UseName` (the name to show) and `GroupID`.
class IUser : public virtual IRecord {
public:
    ~IUser() override;
    /// The user's group, a record with `GroupID`, `GroupCode` and `GroupName`; nothing without one.
    [[nodiscard]] virtual Ref<IRecord> Group() = 0;
};

/// The session of the user who is working with the host.
class ISession : public virtual Counted {
public:
    ~ISession() override;
    [[nodiscard]] virtual Ref<IUser> User() = 0;
};

/// What the host knows about one kind of its records.
class IObjectDefinition : public virtual Counted {
public:
    ~IObjectDefinition() override;
    [[nodiscard]] virtual QString ObjectKey() const = 0;
    /// Display name of the kind, e.g. "Customer".
    [[nodiscard]] virtual QString UseName() const = 0;
    /// Program id of the kind's class, e.g. "YRWDesk.Customer".
    [[nodiscard]] virtual QString ProgID() const = 0;
    /// A fresh collection of the kind's records.
    [[nodiscard]] virtual Ref<ICollection> Collection() = 0;
};

/// An application in the framework's terms. A member that an application does not support raises
/// `kErrorNotSupported`.
/// Lifetime: counted. Thread: the user-interface thread.
class IApplication : public virtual Counted {
public:
    ~IApplication() override;

    virtual void OpenDatabase(const QString& path) = 0;
    [[nodiscard]] virtual Ref<dao::Database> DAODatabase() = 0;
    /// A host hands each asker a workspace of its own: its `Close` closes what was opened through
    /// it, never the host's own database.
    [[nodiscard]] virtual Ref<dao::Workspace> DAOWorkspace() = 0;
    [[nodiscard]] virtual QString Version() = 0;
    [[nodiscard]] virtual Ref<yrw::ICollection> SystemSettings() = 0;
    /// The data helper bound to the application's database. Owned by the application.
    [[nodiscard]] virtual HostDataHelper* DB() = 0;
    [[nodiscard]] virtual QStringList ObjectKeys() = 0;
    [[nodiscard]] virtual Ref<yrw::ICollection> Reports() = 0;
    virtual bool Login(const QString& code, const QString& password) = 0;
    [[nodiscard]] virtual Ref<IUser> CurrentUser() = 0;
    virtual void setCurrentUser(const Ref<IUser>& user) = 0;
    [[nodiscard]] virtual Ref<IUser> CurrentIUser() = 0;
    virtual void SetupODBC() = 0;
    [[nodiscard]] virtual Ref<IRecord> CurrentSettings(bool refresh) = 0;
    [[nodiscard]] virtual QString Name() = 0;
    [[nodiscard]] virtual QString ODBCDSNPath() = 0;
    [[nodiscard]] virtual QString ProgID() = 0;
    [[nodiscard]] virtual Ref<ISession> Session() = 0;
    [[nodiscard]] virtual QString DSNName() = 0;
    /// Closes the application's database; twice without an error.
    virtual void Terminate() = 0;
    /// A collection by name; nothing when there is none.
    [[nodiscard]] virtual Ref<yrw::ICollection> ICollection(const QString& name) = 0;
    /// The users: a collection whose recordset carries `GroupID`, `GroupCode`, `GroupName`,
    /// `RecordID`, `Code`, `FirstName`, `LastName` and `UseName`, grouped by group.
    [[nodiscard]] virtual Ref<yrw::ICollection> Users() = 0;
    [[nodiscard]] virtual Ref<yrw::ICollection> ObjectKeyPolicies() = 0;
    [[nodiscard]] virtual Ref<yrw::ICollection> ObjectKeyPolicyPermissions() = 0;
    virtual bool CanUserAccessICollection(const Ref<yrw::ICollection>& collection) = 0;
    virtual bool CanUserEditIRecord(const Ref<IRecord>& record) = 0;
    virtual bool CanUserAccessICollectionDelete(const Ref<yrw::ICollection>& collection) = 0;
    virtual bool CanUserAccessICollectionRecordset(const Ref<yrw::ICollection>& collection) = 0;
    virtual bool CanUserAccessICollectionItems(const Ref<yrw::ICollection>& collection) = 0;
    virtual bool CanUserAccessICollectionAdd(const Ref<yrw::ICollection>& collection) = 0;
    [[nodiscard]] virtual Ref<dao::Database> XDatabase() = 0;
};

/// The host's application object.
class IHostApplication : public virtual IApplication {
public:
    ~IHostApplication() override;
    /// The definition of a kind of record; nothing for an unknown key.
    [[nodiscard]] virtual Ref<IObjectDefinition> ObjectDefinition(const QString& objectKey) = 0;
    /// The keys of all definitions.
    [[nodiscard]] virtual QStringList ObjectDefinitionKeys() = 0;
    /// The text to show for the name of a kind of object (what a collection answers to "UseName").
    [[nodiscard]] virtual QString ObjectDisplayName(const QString& useName) = 0;
    /// Display name of the user with that code; the code itself for an unknown one.
    [[nodiscard]] virtual QString UserName(const QString& code) = 0;
    /// Shows help on a topic; false when the host has none.
    virtual bool ShowHelp(int topic) = 0;
    /// A reports collection of the host's framework, as a named-call object.
    [[nodiscard]] virtual Ref<yrw::ICollection> CreateReports() = 0;
};

} // namespace yrw
