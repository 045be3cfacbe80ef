#pragma once

// A small host for tests: customers "cu" with orders "or", five users in three groups, all in a
// database of its own below a given folder.

#include "framework/CollectionBase.h"
#include "framework/HostApplicationBase.h"
#include "platform/component/AutomationError.h"

#include <QFile>

#include <array>
#include <functional>
#include <random>
#include <utility>
#include <vector>

namespace yrw::test {

inline const QString kFakeHostProgID = QStringLiteral("Test.Application");

/// Tables of the fake host. Users 1 ANNA, 2 BEN (Sales), 3 CARA, 4 DAVE (Service), 5 ERIN (Office);
/// customers 1 to 3; orders 1 to 4.
inline constexpr const char* kFakeHostScript = R"(
CREATE TABLE tblGroups (RecordID INTEGER PRIMARY KEY, GroupID LONG, GroupCode TEXT(255),
    GroupName TEXT(255));
INSERT INTO tblGroups VALUES (1, 1, 'SALES', 'Sales'), (2, 2, 'SERVICE', 'Service'),
    (3, 3, 'OFFICE', 'Office');
CREATE TABLE tblUsers (RecordID INTEGER PRIMARY KEY, UserID LONG, GroupID LONG, Code TEXT(255),
    FirstName TEXT(255), LastName TEXT(255), UseName TEXT(255));
INSERT INTO tblUsers VALUES (1, 1, 1, 'ANNA', 'Anna', 'Ash', 'Anna Ash'),
    (2, 2, 1, 'BEN', 'Ben', 'Birch', 'Ben Birch'), (3, 3, 2, 'CARA', 'Cara', 'Cedar', 'Cara Cedar'),
    (4, 4, 2, 'DAVE', 'Dave', 'Dogwood', 'Dave Dogwood'),
    (5, 5, 3, 'ERIN', 'Erin', 'Elm', 'Erin Elm');
CREATE VIEW qryUsers AS SELECT u.*, g.GroupCode, g.GroupName FROM tblUsers AS u
    LEFT JOIN tblGroups AS g ON g.GroupID = u.GroupID ORDER BY g.GroupName, u.Code;
CREATE TABLE tblCustomers (RecordID INTEGER PRIMARY KEY AUTOINCREMENT, CustomerName TEXT(255));
INSERT INTO tblCustomers (CustomerName) VALUES ('Quill & Son'), ('Ferry Lane'), ('Larch Ltd');
CREATE TABLE tblOrders (RecordID INTEGER PRIMARY KEY AUTOINCREMENT, CustomerID LONG,
    OrderNumber TEXT(255));
INSERT INTO tblOrders (CustomerID, OrderNumber) VALUES (1, 'O-1'), (1, 'O-2'), (2, 'O-3'),
    (3, 'O-4');
)";

/// Kinds of record of the fake host.
struct FakeTables {
    TableDifferences groups{.TableName = QStringLiteral("tblGroups"),
                            .StoredQuery = QStringLiteral("tblGroups")};
    TableDifferences users{.TableName = QStringLiteral("tblUsers"),
                           .ObjectKey = QStringLiteral("us"),
                           .CollectionName = QStringLiteral("Users"),
                           .StoredQuery = QStringLiteral("qryUsers"),
                           .UseName = QStringLiteral("User")};
    TableDifferences customers{.TableName = QStringLiteral("tblCustomers"),
                               .ObjectKey = QStringLiteral("cu"),
                               .CollectionName = QStringLiteral("Customers"),
                               .CommonFieldName = QStringLiteral("CustomerID"),
                               .ShortDisplayFieldName = QStringLiteral("CustomerName"),
                               .StoredQuery = QStringLiteral("tblCustomers"),
                               .UseName = QStringLiteral("Customer")};
    TableDifferences orders{.TableName = QStringLiteral("tblOrders"),
                            .ObjectKey = QStringLiteral("or"),
                            .CollectionName = QStringLiteral("Orders"),
                            .CommonFieldName = QStringLiteral("OrderID"),
                            .ShortDisplayFieldName = QStringLiteral("OrderNumber"),
                            .StoredQuery = QStringLiteral("tblOrders"),
                            .UseName = QStringLiteral("Order")};
    TableDifferences reports{.CollectionName = QStringLiteral("Reports"),
                             .UseName = QStringLiteral("Report")};
};

inline const FakeTables& fakeTables() {
    static const FakeTables tables;
    return tables;
}

/// What a host is asked for.
enum class HostAnswer {
    Interface,
    UpperController,
    LowerController,
    Application,
    Toolbar,
    StatusBar,
    Status,
    CurrentController,
    Window,
    WindowState,
    InterfaceToolbar,
    Bands,
    Grid,
    GridSplits,
    GridRows,
    GridState,
    CurrentRecord,
    CurrentObject,
    RecordField,
    RecordName,
    RecordCollection,
    Workspace,
    Database,
    Users,
    UserRows,
    CurrentUser,
    Group,
    Session,
    Reports,
    ObjectDefinition,
    DefinedCollection,
    Names,
    ProgID,
    Count
};

/// How a host fails to give an answer: it has nothing to give, or raises.
enum class Giving { Given, Missing, Raising };

/// Makes answers of the host fail: those that are set to, and every one in `oneIn` on average
/// (0: none).
class Trouble {
public:
    unsigned oneIn = 0;
    int raised = 0; ///< how often it did
    std::vector<HostAnswer> asked;

    void seed(unsigned seed) { m_random.seed(seed); }
    void set(HostAnswer answer, Giving how) { m_giving[static_cast<std::size_t>(answer)] = how; }
    /// True when the host has that answer to give. Bands never fail at random: a tool that cannot
    /// be found could not be taken away either.
    bool gives(HostAnswer answer) {
        asked.push_back(answer);
        const Giving how = m_giving[static_cast<std::size_t>(answer)];
        if (how == Giving::Raising ||
            (answer != HostAnswer::Bands && oneIn != 0 && m_random() % oneIn == 0)) {
            ++raised;
            throw AutomationError(kErrorInvalidOperation, QStringLiteral("Test host"),
                                  QStringLiteral("The host is in trouble"));
        }
        return how == Giving::Given;
    }

private:
    std::array<Giving, static_cast<std::size_t>(HostAnswer::Count) + 1> m_giving{};
    std::mt19937 m_random{1};
};

class FakeRecord final : public RecordBase {
public:
    FakeRecord(const TableDifferences& table, Trouble& trouble)
        : RecordBase(table), m_trouble(trouble) {}
    [[nodiscard]] Ref<dao::Field> Field(const QString& name) override {
        return RecordBase::Field(m_trouble.gives(HostAnswer::RecordField) ? name : QString());
    }
    [[nodiscard]] Ref<dao::Field> ShortDisplayValue() override {
        return m_trouble.gives(HostAnswer::RecordName) ? RecordBase::ShortDisplayValue() : nullptr;
    }
    [[nodiscard]] Ref<ICollection> Collection() const override {
        return m_trouble.gives(HostAnswer::RecordCollection) ? RecordBase::Collection() : nullptr;
    }

private:
    Trouble& m_trouble;
};

class FakeCollection : public CollectionBase {
public:
    FakeCollection(const TableDifferences& table, Trouble& trouble)
        : CollectionBase(table), m_trouble(trouble) {}

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override {
        return make<FakeRecord>(differences(), m_trouble);
    }

private:
    Trouble& m_trouble;
};

class FakeUser final : public RecordBase, public IUser {
public:
    explicit FakeUser(Trouble& trouble) : RecordBase(fakeTables().users), m_trouble(trouble) {}
    [[nodiscard]] Ref<IRecord> Group() override {
        if (!m_trouble.gives(HostAnswer::Group)) {
            return nullptr;
        }
        const Ref<ICollection> groups = make<FakeCollection>(fakeTables().groups, m_trouble);
        groups->setApplication(Application());
        return groups->Item(value(QStringLiteral("GroupID")));
    }

private:
    Trouble& m_trouble;
};

class FakeUsers final : public CollectionBase {
public:
    explicit FakeUsers(Trouble& trouble) : CollectionBase(fakeTables().users), m_trouble(trouble) {}
    [[nodiscard]] Ref<dao::Recordset> Recordset(const RecordsetRequest& request) override {
        return m_trouble.gives(HostAnswer::UserRows) ? CollectionBase::Recordset(request) : nullptr;
    }

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override { return make<FakeUser>(m_trouble); }

private:
    Trouble& m_trouble;
};

class FakeDefinition final : public IObjectDefinition {
public:
    FakeDefinition(const TableDifferences& table, Ref<IApplication> application, Trouble& trouble)
        : m_table(table), m_application(std::move(application)), m_trouble(trouble) {}
    [[nodiscard]] QString ObjectKey() const override { return m_table.ObjectKey; }
    [[nodiscard]] QString UseName() const override { return m_table.UseName; }
    [[nodiscard]] QString ProgID() const override { return u"Test." + m_table.CollectionName; }
    [[nodiscard]] Ref<ICollection> Collection() override {
        return m_trouble.gives(HostAnswer::DefinedCollection) ? collection() : nullptr;
    }
    [[nodiscard]] Ref<ICollection> collection() const {
        const Ref<ICollection> collection = make<FakeCollection>(m_table, m_trouble);
        collection->setApplication(m_application);
        collection->setParent(m_application);
        return collection;
    }

private:
    const TableDifferences& m_table;
    Ref<IApplication> m_application;
    Trouble& m_trouble;
};

/// The fake host's application object.
class FakeHostApplication final : public HostApplicationBase {
public:
    /// Makes the host's database "Host.mdb" in the folder, or opens the one that is there.
    /// `engine` outlives the application.
    FakeHostApplication(const dao::EngineServices& engine, const QString& folder)
        : m_engine(engine), m_workspace(dao::createWorkspace(engine)) {
        const QString path = folder + QStringLiteral("/Host.mdb");
        if (QFile::exists(path)) {
            m_database = m_workspace->OpenDatabase(path);
        } else {
            m_database = m_workspace->CreateDatabase(path);
            m_database->RunScript(QString::fromLatin1(kFakeHostScript));
        }
        m_helper.setDatabase(m_database);
    }

    /// The record with that key of the customers ("cu") or orders ("or").
    [[nodiscard]] Ref<IRecord> record(const QString& objectKey, qint64 id) {
        return collection(objectKey)->Item(QVariant(id));
    }
    /// Those records themselves.
    [[nodiscard]] Ref<yrw::ICollection> collection(const QString& objectKey) {
        return definition(objectKey)->collection();
    }
    void actAs(qint64 userID) { m_userID = userID; }

    Trouble trouble;                  ///< of the host and of its window
    QStringList shownHelp;            ///< topics that help was asked for
    bool hasHelp = true;              ///< what asking for it answers
    QString progID = kFakeHostProgID; ///< what `ProgID` answers

    [[nodiscard]] Ref<dao::Database> DAODatabase() override {
        return trouble.gives(HostAnswer::Database) ? m_database : nullptr;
    }
    [[nodiscard]] Ref<dao::Workspace> DAOWorkspace() override {
        return trouble.gives(HostAnswer::Workspace) ? dao::createWorkspace(m_engine) : nullptr;
    }
    [[nodiscard]] QString Version() override { return QStringLiteral("1.2.3"); }
    [[nodiscard]] HostDataHelper* DB() override { return &m_helper; }
    [[nodiscard]] Ref<IUser> CurrentUser() override {
        return trouble.gives(HostAnswer::CurrentUser)
                   ? query<IUser>(users()->Item(QVariant(m_userID)))
                   : nullptr;
    }
    void setCurrentUser(const Ref<IUser>& user) override {
        m_userID = user->value(QStringLiteral("RecordID")).toLongLong();
    }
    [[nodiscard]] QString Name() override { return QStringLiteral("Test host"); }
    [[nodiscard]] QString ProgID() override {
        return trouble.gives(HostAnswer::ProgID) ? progID : QString();
    }
    void Terminate() override { m_workspace->Close(); }
    [[nodiscard]] Ref<yrw::ICollection> Users() override {
        return trouble.gives(HostAnswer::Users) ? users() : nullptr;
    }
    [[nodiscard]] Ref<ISession> Session() override {
        return trouble.gives(HostAnswer::Session) ? HostApplicationBase::Session() : nullptr;
    }
    [[nodiscard]] Ref<IObjectDefinition> ObjectDefinition(const QString& objectKey) override {
        return trouble.gives(HostAnswer::ObjectDefinition) ? definition(objectKey) : nullptr;
    }
    [[nodiscard]] QString ObjectDisplayName(const QString& useName) override {
        return trouble.gives(HostAnswer::Names) ? useName : QString();
    }
    [[nodiscard]] QStringList ObjectDefinitionKeys() override {
        return {QStringLiteral("cu"), QStringLiteral("or")};
    }
    [[nodiscard]] QString UserName(const QString& code) override {
        if (!trouble.gives(HostAnswer::Names)) {
            return {};
        }
        const Ref<dao::Recordset> rows = m_database->OpenRecordset(QStringLiteral("qryUsers"));
        for (; !rows->AtEof(); rows->MoveNext()) {
            if (rows->value(QStringLiteral("Code")).toString() == code) {
                return rows->value(QStringLiteral("UseName")).toString();
            }
        }
        return code;
    }
    bool ShowHelp(int topic) override {
        shownHelp += QString::number(topic);
        return hasHelp;
    }
    [[nodiscard]] Ref<yrw::ICollection> CreateReports() override {
        return trouble.gives(HostAnswer::Reports)
                   ? make<FakeCollection>(fakeTables().reports, trouble)
                   : nullptr;
    }

private:
    [[nodiscard]] Ref<FakeUsers> users() {
        Ref<FakeUsers> users = make<FakeUsers>(trouble);
        users->setApplication(Ref<IApplication>(this));
        return users;
    }
    [[nodiscard]] Ref<FakeDefinition> definition(const QString& objectKey) {
        for (const TableDifferences* table : {&fakeTables().customers, &fakeTables().orders}) {
            if (table->ObjectKey == objectKey) {
                return make<FakeDefinition>(*table, Ref<IApplication>(this), trouble);
            }
        }
        return nullptr;
    }

    dao::EngineServices m_engine;
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
    qint64 m_userID = 1;
};

} // namespace yrw::test
