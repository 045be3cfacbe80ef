#include "host/core/DeskCollections.h"

namespace yrw {

namespace {

/// The table of differences of one kind of desk record.
TableDifferences differencesOf(const QString& table, const QString& query, const QString& key,
                               const QString& commonField, const QString& shortField,
                               const QString& useName) {
    TableDifferences d;
    d.TableName = table;
    d.QueryName = query;
    d.StoredQuery = query;
    d.ObjectKey = key;
    d.CollectionName = table;
    d.ClassName = table;
    d.CommonFieldName = commonField;
    d.ShortDisplayFieldName = shortField;
    d.ItemSource = QStringLiteral("YRWDesk.%1.Item").arg(table);
    d.FieldSource = QStringLiteral("YRWDesk.%1.Field").arg(useName);
    d.UseName = useName;
    return d;
}

QString text(const char16_t* s) {
    return QString::fromUtf16(s);
}

const TableDifferences& customersTable() {
    static const TableDifferences table =
        differencesOf(text(u"Customers"), text(u"Customers"), text(u"cu"), text(u"CustomerID"),
                      text(u"Name"), text(u"Customer"));
    return table;
}

const TableDifferences& ordersTable() {
    static const TableDifferences table =
        differencesOf(text(u"Orders"), text(u"qryOrders"), text(u"or"), text(u"OrderID"),
                      text(u"OrderNo"), text(u"Order"));
    return table;
}

const TableDifferences& usersTable() {
    static const TableDifferences table =
        differencesOf(text(u"Users"), text(u"qryUsers"), text(u"us"), text(u"UserID"),
                      text(u"UseName"), text(u"User"));
    return table;
}

const TableDifferences& groupsTable() {
    static const TableDifferences table =
        differencesOf(text(u"Groups"), text(u"qryGroups"), text(u"gp"), text(u"GroupID"),
                      text(u"GroupName"), text(u"Group"));
    return table;
}

const TableDifferences& reportsTable() {
    static const TableDifferences table =
        differencesOf(text(u"Reports"), text(u"Reports"), text(u"rp"), text(u"ReportID"),
                      text(u"Title"), text(u"Report"));
    return table;
}

Ref<ICollection> owned(const Ref<ICollection>& collection, const Ref<IApplication>& application) {
    collection->setApplication(application);
    collection->setParent(application);
    return collection;
}

} // namespace

DeskUser::DeskUser() : RecordBase(usersTable()) {}

Ref<IRecord> DeskUser::Group() {
    const QVariant group = value(QStringLiteral("GroupID"));
    return group.isNull() ? Ref<IRecord>() : makeGroups(Application())->Item(group);
}

Ref<IRecord> DeskCollection::newRecord() const {
    return make<RecordBase>(differences());
}

DeskOrders::DeskOrders() : DeskCollection(ordersTable()) {}

QStringList DeskOrders::conditions(const RecordsetRequest& request) const {
    QStringList all = DeskCollection::conditions(request);
    if (const auto owner = query<IRecord>(Parent())) {
        all += HostDataHelper::EqualCondition(owner->Collection()->CommonFieldName(),
                                              owner->value(owner->Collection()->KeyField()));
    }
    return all;
}

DeskUsers::DeskUsers() : CollectionBase(usersTable()) {}

Ref<dao::Recordset> DeskUsers::Recordset(const RecordsetRequest& request) {
    RecordsetRequest ordered = request;
    if (ordered.Sort.isEmpty()) {
        ordered.Sort = QStringLiteral("[GroupName], [LastName], [FirstName]");
    }
    return CollectionBase::Recordset(ordered);
}

Ref<IRecord> DeskUsers::newRecord() const {
    return Ref<IRecord>(new DeskUser);
}

Ref<ICollection> makeCustomers(const Ref<IApplication>& application) {
    return owned(make<DeskCollection>(customersTable()), application);
}

Ref<ICollection> makeOrders(const Ref<IApplication>& application) {
    return owned(make<DeskOrders>(), application);
}

Ref<ICollection> makeUsers(const Ref<IApplication>& application) {
    return owned(make<DeskUsers>(), application);
}

Ref<ICollection> makeGroups(const Ref<IApplication>& application) {
    return owned(make<DeskCollection>(groupsTable()), application);
}

Ref<ICollection> makeReports() {
    return make<DeskCollection>(reportsTable());
}

} // namespace yrw
