#pragma once

#include "framework/HostApplicationBase.h"
#include "framework/HostDataHelper.h"
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
class DeskApplication final : public HostApplicationBase {
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

    [[nodiscard]] Ref<dao::Database> DAODatabase() override;
    [[nodiscard]] Ref<dao::Workspace> DAOWorkspace() override;
    [[nodiscard]] QString Version() override;
    [[nodiscard]] HostDataHelper* DB() override;
    bool Login(const QString& code, const QString& password) override;
    [[nodiscard]] Ref<IUser> CurrentUser() override;
    void setCurrentUser(const Ref<IUser>& user) override;
    [[nodiscard]] QString Name() override;
    [[nodiscard]] QString ProgID() override;
    void Terminate() override;
    [[nodiscard]] Ref<yrw::ICollection> ICollection(const QString& name) override;
    [[nodiscard]] Ref<yrw::ICollection> Users() override;
    [[nodiscard]] Ref<IObjectDefinition> ObjectDefinition(const QString& objectKey) override;
    [[nodiscard]] QStringList ObjectDefinitionKeys() override;
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
