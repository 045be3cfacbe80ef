#pragma once

#include "framework/HostDataHelper.h"
#include "framework/IApplication.h"
#include "host/core/DeskDatabase.h"

#include <QHash>

namespace yrw {

/// What a desk is opened with.
struct DeskStart {
    QString folder;                       ///< where `Desk.mdb` lies
    QString userCode;                     ///< empty: the first user
    qint64 customers = kDefaultCustomers; ///< how many a new database gets
    bool createMissing = true;            ///< make the database when it is not there
    DeskProgress progress;                ///< told while a new database is made
};

/// Program id of the desk.
inline constexpr char16_t kDeskProgID[] = u"YRWDesk.Application";
/// Object keys of its records.
inline constexpr char16_t kCustomerKey[] = u"cu";
inline constexpr char16_t kOrderKey[] = u"or";

/// The desk's application object: its database, users, session and kinds of record.
///
/// Lifetime: counted; its end closes the database. Objects that it hands out keep it alive; it
/// keeps none of them.
/// Thread: the user-interface thread.
class DeskApplication final : public virtual IHostApplication {
public:
    /// Shows help on a topic; false when there is none.
    using Help = std::function<bool(int topic)>;

    /// Opens the desk, making its database when it is missing. Raises what `openDeskDatabase` and
    /// `createDeskDatabase` raise, and `kErrorRecordNotFound` for an unknown user, naming those
    /// there are. `engine` outlives the application.
    [[nodiscard]] static Ref<DeskApplication> open(const dao::EngineServices& engine,
                                                   const DeskStart& start);

    void setHelp(Help help) { m_help = std::move(help); }
    /// The customers, and the orders of one customer (or all, for nothing).
    [[nodiscard]] Ref<yrw::ICollection> Customers();
    [[nodiscard]] Ref<yrw::ICollection> Orders(const Ref<IRecord>& customer);
    /// Deletes a record of a kind; a customer's orders go with it.
    void deleteRecord(const QString& objectKey, qint64 recordID);
    /// Fills what the user left empty in a new record: its number, today's date, and the customer
    /// of an order (`customerID`, 0 for none). True when something was filled.
    bool completeRecord(const QString& objectKey, qint64 recordID, qint64 customerID);

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
    [[nodiscard]] Ref<IObjectDefinition> ObjectDefinition(const QString& objectKey) override;
    [[nodiscard]] QStringList ObjectDefinitionKeys() override;
    [[nodiscard]] QString ObjectDisplayName(const QString& useName) override;
    [[nodiscard]] QString UserName(const QString& code) override;
    bool ShowHelp(int topic) override;
    [[nodiscard]] Ref<yrw::ICollection> CreateReports() override;

private:
    explicit DeskApplication(const dao::EngineServices& engine);
    ~DeskApplication() override;

    void openDatabase(const DeskStart& start);
    void readUsers();
    void logIn(const QString& code);
    void becomeUser(qint64 id, const QString& code);

    dao::EngineServices m_engine;
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
    qint64 m_userID = 0;
    /// By code in upper case.
    struct KnownUser {
        qint64 id = 0;
        QString code;
        QString useName;
    };
    QHash<QString, KnownUser> m_users;
    Help m_help;
};

} // namespace yrw
