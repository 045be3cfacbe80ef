#include "host/core/DeskCollections.h"

#include "host/core/DeskApplication.h"

namespace yrw {

namespace {

/// One kind of desk record.
struct Kind {
    const char16_t* table;
    const char16_t* query;
    const char16_t* key;
    const char16_t* commonField;
    const char16_t* shortField;
    const char16_t* useName;
};

constexpr Kind kCustomers{u"Customers",  u"Customers", kCustomerKey,
                          u"CustomerID", u"Name",      u"Customer"};
constexpr Kind kOrders{u"Orders", u"qryOrders", kOrderKey, u"OrderID", u"OrderNo", u"Order"};
constexpr Kind kUsers{u"Users", u"qryUsers", u"us", u"UserID", u"UseName", u"User"};
constexpr Kind kGroups{u"Groups", u"qryGroups", u"gp", u"GroupID", u"GroupName", u"Group"};
constexpr Kind kReports{u"Reports", u"Reports", u"rp", u"ReportID", u"Title", u"Report"};

/// The table of differences of a kind, made once.
template <const Kind& kKind>
const TableDifferences& differencesOf() {
    static const TableDifferences table = [] {
        TableDifferences d;
        d.TableName = QString::fromUtf16(kKind.table);
        d.QueryName = QString::fromUtf16(kKind.query);
        d.StoredQuery = d.QueryName;
        d.ObjectKey = QString::fromUtf16(kKind.key);
        d.CollectionName = d.TableName;
        d.ClassName = d.TableName;
        d.CommonFieldName = QString::fromUtf16(kKind.commonField);
        d.ShortDisplayFieldName = QString::fromUtf16(kKind.shortField);
        d.UseName = QString::fromUtf16(kKind.useName);
        d.ItemSource = QStringLiteral("YRWDesk.%1.Item").arg(d.TableName);
        d.FieldSource = QStringLiteral("YRWDesk.%1.Field").arg(d.UseName);
        return d;
    }();
    return table;
}

Ref<ICollection> owned(const Ref<ICollection>& collection, const Ref<IApplication>& application) {
    collection->setApplication(application);
    collection->setParent(application);
    return collection;
}

} // namespace

DeskUser::DeskUser() : RecordBase(differencesOf<kUsers>()) {}

Ref<IRecord> DeskUser::Group() {
    const QVariant group = value(QStringLiteral("GroupID"));
    return group.isNull() ? Ref<IRecord>() : makeGroups(Application())->Item(group);
}

Ref<IRecord> DeskCollection::newRecord() const {
    return make<RecordBase>(differences());
}

DeskOrders::DeskOrders() : DeskCollection(differencesOf<kOrders>()) {}

QStringList DeskOrders::conditions(const RecordsetRequest& request) const {
    QStringList all = DeskCollection::conditions(request);
    if (const auto owner = query<IRecord>(Parent())) {
        all += HostDataHelper::EqualCondition(owner->Collection()->CommonFieldName(),
                                              owner->value(owner->Collection()->KeyField()));
    }
    return all;
}

DeskUsers::DeskUsers() : CollectionBase(differencesOf<kUsers>()) {}

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
    return owned(make<DeskCollection>(differencesOf<kCustomers>()), application);
}

Ref<ICollection> makeOrders(const Ref<IApplication>& application) {
    return owned(make<DeskOrders>(), application);
}

Ref<ICollection> makeUsers(const Ref<IApplication>& application) {
    return owned(make<DeskUsers>(), application);
}

Ref<ICollection> makeGroups(const Ref<IApplication>& application) {
    return owned(make<DeskCollection>(differencesOf<kGroups>()), application);
}

Ref<ICollection> makeReports() {
    return make<DeskCollection>(differencesOf<kReports>());
}

} // namespace yrw
