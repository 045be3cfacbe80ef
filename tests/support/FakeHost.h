#pragma once

// A small host for tests: customers "cu" with orders "or", five users in three groups, all in a
// database of its own below a given folder.

#include "framework/CollectionBase.h"
#include "framework/HostApplicationBase.h"
#include "platform/component/AutomationError.h"

#include <QFile>

#include <functional>
#include <utility>

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

class FakeRecord final : public RecordBase {
public:
    using RecordBase::RecordBase;
};

class FakeCollection : public CollectionBase {
public:
    using CollectionBase::CollectionBase;

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override {
        return make<FakeRecord>(differences());
    }
};

class FakeUser final : public RecordBase, public IUser {
public:
    FakeUser() : RecordBase(fakeTables().users) {}
    [[nodiscard]] Ref<IRecord> Group() override {
        const Ref<ICollection> groups = make<FakeCollection>(fakeTables().groups);
        groups->setApplication(Application());
        return groups->Item(value(QStringLiteral("GroupID")));
    }
};

class FakeUsers final : public CollectionBase {
public:
    FakeUsers() : CollectionBase(fakeTables().users) {}

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override { return make<FakeUser>(); }
};

class FakeDefinition final : public IObjectDefinition {
public:
    FakeDefinition(const TableDifferences& table, Ref<IApplication> application)
        : m_table(table), m_application(std::move(application)) {}
    [[nodiscard]] QString ObjectKey() const override { return m_table.ObjectKey; }
    [[nodiscard]] QString UseName() const override { return m_table.UseName; }
    [[nodiscard]] QString ProgID() const override { return u"Test." + m_table.CollectionName; }
    [[nodiscard]] Ref<ICollection> Collection() override {
        const Ref<ICollection> collection = make<FakeCollection>(m_table);
        collection->setApplication(m_application);
        collection->setParent(m_application);
        return collection;
    }

private:
    const TableDifferences& m_table;
    Ref<IApplication> m_application;
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
        return ObjectDefinition(objectKey)->Collection()->Item(QVariant(id));
    }
    void actAs(qint64 userID) { m_userID = userID; }

    QStringList shownHelp;            ///< topics that help was asked for
    bool hasHelp = true;              ///< what asking for it answers
    QString progID = kFakeHostProgID; ///< what `ProgID` answers

    [[nodiscard]] Ref<dao::Database> DAODatabase() override { return m_database; }
    [[nodiscard]] Ref<dao::Workspace> DAOWorkspace() override {
        return dao::createWorkspace(m_engine);
    }
    [[nodiscard]] QString Version() override { return QStringLiteral("1.2.3"); }
    [[nodiscard]] HostDataHelper* DB() override { return &m_helper; }
    [[nodiscard]] Ref<IUser> CurrentUser() override {
        return query<IUser>(Users()->Item(QVariant(m_userID)));
    }
    void setCurrentUser(const Ref<IUser>& user) override {
        m_userID = user->value(QStringLiteral("RecordID")).toLongLong();
    }
    [[nodiscard]] QString Name() override { return QStringLiteral("Test host"); }
    [[nodiscard]] QString ProgID() override { return progID; }
    void Terminate() override { m_workspace->Close(); }
    [[nodiscard]] Ref<yrw::ICollection> Users() override {
        const Ref<yrw::ICollection> users = make<FakeUsers>();
        users->setApplication(Ref<IApplication>(this));
        return users;
    }
    [[nodiscard]] Ref<IObjectDefinition> ObjectDefinition(const QString& objectKey) override {
        for (const TableDifferences* table : {&fakeTables().customers, &fakeTables().orders}) {
            if (table->ObjectKey == objectKey) {
                return make<FakeDefinition>(*table, Ref<IApplication>(this));
            }
        }
        return nullptr;
    }
    [[nodiscard]] QStringList ObjectDefinitionKeys() override {
        return {QStringLiteral("cu"), QStringLiteral("or")};
    }
    [[nodiscard]] QString UserName(const QString& code) override {
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
        return make<FakeCollection>(fakeTables().reports);
    }

private:
    dao::EngineServices m_engine;
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
    qint64 m_userID = 1;
};

} // namespace yrw::test
