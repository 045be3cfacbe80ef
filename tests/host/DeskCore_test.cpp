#include "host/core/DeskApplication.h"
#include "platform/component/NamedCalls.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

class DeskCore : public testing::Test {
protected:
    Ref<DeskApplication> open(const QString& user = {}, qint64 customers = 30) {
        DeskStart start;
        start.folder = m_folder.path();
        start.userCode = user;
        start.customers = customers;
        return DeskApplication::open({m_clock, m_files}, start);
    }
    static qint64 count(const Ref<ICollection>& collection) {
        return collection->Recordset({})->RecordCount();
    }
    static QString text(const Ref<IRecord>& record, const char* field) {
        return record->value(QString::fromLatin1(field)).toString();
    }

    QTemporaryDir m_folder;
    ManualClock m_clock{QDateTime(QDate(2026, 3, 2), QTime(9, 0))};
    FileSystem m_files;
};

} // namespace

TEST_F(DeskCore, MakesTheDatabaseOnceAndFindsItAgain) {
    QFile brokenOff(m_folder.filePath("Desk.mdb.making"));
    ASSERT_TRUE(brokenOff.open(QIODevice::WriteOnly) && brokenOff.write("half") == 4);
    brokenOff.close();
    {
        const auto desk = open();
        EXPECT_EQ(desk->DAODatabase()->Name(), m_folder.filePath("Desk.mdb"));
        EXPECT_EQ(count(desk->Customers()), 30);
        EXPECT_GT(count(desk->Orders(nullptr)), 30);
        desk->Customers()->Item(7)->Field("Name")->setValue("Renamed");
    }
    const auto again = open({}, 99);
    EXPECT_EQ(count(again->Customers()), 30);
    EXPECT_EQ(text(again->Customers()->Item(7), "Name"), "Renamed");
    EXPECT_EQ(QDir(m_folder.path()).entryList({"*.making*"}), QStringList());
}

TEST_F(DeskCore, InventsTheSamePeopleEveryTimeAndNobodyReal) {
    const auto desk = open();
    QTemporaryDir other;
    DeskStart start;
    start.folder = other.path();
    start.customers = 30;
    const auto second = DeskApplication::open({m_clock, m_files}, start);
    QSet<QString> numbers;
    for (qint64 id = 1; id <= 30; ++id) {
        const auto customer = desk->Customers()->Item(id);
        EXPECT_EQ(text(customer, "Name"), text(second->Customers()->Item(id), "Name"));
        EXPECT_TRUE(text(customer, "EMail").endsWith(".example"))
            << qPrintable(text(customer, "EMail"));
        EXPECT_TRUE(text(customer, "Phone").startsWith("01632 960"));
        EXPECT_LT(customer->value("CustomerSince").toDateTime(), m_clock.now());
        numbers += text(customer, "CustomerNo");
    }
    EXPECT_EQ(numbers.size(), 30);
}

TEST_F(DeskCore, UsersComeGroupedByGroup) {
    const auto desk = open("cara");
    const auto rows = desk->Users()->Recordset({});
    QStringList seen;
    for (; !rows->AtEof(); rows->MoveNext()) {
        seen += rows->value(u"GroupName").toString() + '/' + rows->value(u"Code").toString() + '/' +
                rows->value(u"UseName").toString().section(' ', 0, 0);
    }
    EXPECT_EQ(seen, QStringList({"Office/ERIN/Erin", "Sales/ANNA/Anna", "Sales/BEN/Ben",
                                 "Service/DAVE/Dave", "Service/CARA/Cara"}));
    const auto user = desk->Session()->User();
    EXPECT_EQ(text(user, "Code"), "CARA");
    EXPECT_EQ(text(user->Group(), "GroupName"), "Service");
    EXPECT_EQ(user->Group()->value("GroupID"), user->value("GroupID"));
    EXPECT_EQ(desk->DB()->CurrentUserID(), user->value("RecordID").toLongLong());
    EXPECT_EQ(desk->UserName("ben"), "Ben Okafor");
    EXPECT_EQ(desk->UserName("ZOE"), "ZOE");
}

TEST_F(DeskCore, AnUnknownUserIsRefusedByNameWithTheKnownOnes) {
    const AutomationError error = test::raisedBy([&] { static_cast<void>(open("ZOE")); });
    EXPECT_EQ(error.number(), kErrorRecordNotFound);
    EXPECT_EQ(error.description(),
              "There is no user 'ZOE'. The users are ANNA, BEN, CARA, DAVE, ERIN.");
}

TEST_F(DeskCore, AFileThatIsNoDeskIsRefusedByName) {
    const QString path = m_folder.filePath("Desk.mdb");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    for (const bool isDatabase : {false, true}) {
        if (isDatabase) {
            file.remove();
            const auto workspace = dao::createWorkspace({m_clock, m_files});
            workspace->CreateDatabase(path)->RunScript("CREATE TABLE Customers (RecordID INTEGER)");
            workspace->Close();
        }
        const AutomationError error = test::raisedBy([&] { static_cast<void>(open()); });
        EXPECT_EQ(error.number(), kErrorNotADatabase) << isDatabase;
        EXPECT_TRUE(error.description().contains(path)) << qPrintable(error.description());
    }
}

TEST_F(DeskCore, KindsOfRecordPresentThemselves) {
    const auto desk = open();
    const struct {
        const char* key;
        const char* useName;
        const char* progID;
        const char* shortField;
    } kinds[] = {{"cu", "Customer", "YRWDesk.Customers", "Name"},
                 {"OR", "Order", "YRWDesk.Orders", "OrderNo"}};
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.key);
        const auto definition = desk->ObjectDefinition(kind.key);
        ASSERT_TRUE(definition);
        EXPECT_EQ(definition->UseName(), kind.useName);
        EXPECT_EQ(definition->ProgID(), kind.progID);
        const auto record = definition->Collection()->Item(3);
        EXPECT_EQ(record->Collection()->ObjectKey(), definition->ObjectKey());
        EXPECT_EQ(record->ShortDisplayValue()->Value(), record->value(kind.shortField));
        EXPECT_EQ(callByName(dynamic_cast<INamedCalls*>(definition->Collection().get()), "UseName"),
                  QVariant(definition->UseName()));
    }
    EXPECT_FALSE(desk->ObjectDefinition("zz"));
    EXPECT_EQ(desk->ObjectDefinitionKeys(), QStringList({"cu", "or"}));
}

TEST_F(DeskCore, CompletesWhatTheUserLeftEmpty) {
    const auto desk = open();
    qint64 id = 0;
    static_cast<void>(
        desk->Orders(nullptr)->Add({{"Item", "Coat stand"}, {"OrderNo", "X1"}}, nullptr, id, true));
    EXPECT_TRUE(desk->completeRecord("or", id, 5));
    const auto order = desk->Orders(nullptr)->Item(id);
    EXPECT_EQ(order->value("CustomerID"), QVariant(5));
    EXPECT_EQ(order->value("OrderDate").toDateTime().date(), m_clock.now().date());
    EXPECT_EQ(text(order, "OrderNo"), "X1");
    EXPECT_EQ(text(order, "State"), "Open");
    EXPECT_FALSE(desk->completeRecord("or", id, 6));
}
