#include "host/core/DeskApplication.h"

#include "host/core/DeskCollections.h"
#include "platform/component/AutomationError.h"

#include <QFileInfo>

namespace yrw {

namespace {

/// Numbers of orders count from here.
constexpr qint64 kFirstOrderNumber = 10000;

/// How each kind of record presents itself.
struct KindOfRecord {
    const char16_t* key;
    const char16_t* useName;
    const char16_t* progID;
    Ref<ICollection> (*collection)(const Ref<IApplication>&);
};

constexpr KindOfRecord kKinds[] = {
    {kCustomerKey, u"Customer", u"YRWDesk.Customers", makeCustomers},
    {kOrderKey, u"Order", u"YRWDesk.Orders", makeOrders},
};

class DeskObjectDefinition final : public IObjectDefinition {
public:
    DeskObjectDefinition(const KindOfRecord& kind, Ref<IApplication> application)
        : m_kind(kind), m_application(std::move(application)) {}

    [[nodiscard]] QString ObjectKey() const override { return QString::fromUtf16(m_kind.key); }
    [[nodiscard]] QString UseName() const override { return QString::fromUtf16(m_kind.useName); }
    [[nodiscard]] QString ProgID() const override { return QString::fromUtf16(m_kind.progID); }
    [[nodiscard]] Ref<ICollection> Collection() override {
        return m_kind.collection(m_application);
    }

private:
    const KindOfRecord& m_kind;
    Ref<IApplication> m_application;
};

} // namespace

DeskApplication::DeskApplication(const dao::EngineServices& engine)
    : m_engine(engine), m_workspace(dao::createWorkspace(engine)) {}

DeskApplication::~DeskApplication() {
    try {
        DeskApplication::Terminate();
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
}

Ref<DeskApplication> DeskApplication::open(const dao::EngineServices& engine,
                                           const DeskStart& start) {
    Ref<DeskApplication> application(new DeskApplication(engine));
    application->openDatabase(start);
    application->logIn(start.userCode);
    return application;
}

void DeskApplication::openDatabase(const DeskStart& start) {
    if (start.createMissing && !QFileInfo::exists(deskDatabasePath(start.folder))) {
        createDeskDatabase(*m_workspace, start.folder, start.customers, m_engine.clock.now().date(),
                           start.progress);
    }
    m_database = openDeskDatabase(*m_workspace, start.folder);
    m_helper.setDatabase(m_database);
    readUsers();
}

void DeskApplication::readUsers() {
    const Ref<dao::Recordset> rows = m_database->OpenRecordset(
        QStringLiteral("qryUsers"), dao::RecordsetType::Snapshot, dao::kReadOnlyOption);
    for (; !rows->AtEof(); rows->MoveNext()) {
        const QString code = rows->value(u"Code").toString();
        m_users.insert(code.toUpper(), {rows->value(u"RecordID").toLongLong(), code,
                                        rows->value(u"UseName").toString()});
    }
    rows->Close();
}

void DeskApplication::logIn(const QString& code) {
    QStringList codes;
    for (const KnownUser& user : std::as_const(m_users)) {
        codes += user.code;
    }
    codes.sort();
    const QString wanted = code.isEmpty() ? codes.value(0) : code;
    const auto found = m_users.constFind(wanted.toUpper());
    if (found == m_users.constEnd()) {
        throw AutomationError(kErrorRecordNotFound, QStringLiteral("YRWDesk.Application.LogIn"),
                              QStringLiteral("There is no user '%1'. The users are %2.")
                                  .arg(code, codes.join(QStringLiteral(", "))));
    }
    becomeUser(found->id, found->code);
}

void DeskApplication::becomeUser(qint64 id, const QString& code) {
    m_userID = id;
    m_helper.setCurrentUserID(id);
    m_helper.setCurrentUserCode(code);
}

Ref<yrw::ICollection> DeskApplication::Customers() {
    return makeCustomers(Ref<IApplication>(this));
}

Ref<yrw::ICollection> DeskApplication::Orders(const Ref<IRecord>& customer) {
    const Ref<yrw::ICollection> orders = makeOrders(Ref<IApplication>(this));
    if (customer) {
        orders->setParent(customer);
    }
    return orders;
}

void DeskApplication::deleteRecord(const QString& objectKey, qint64 recordID) {
    const Ref<IObjectDefinition> definition = ObjectDefinition(objectKey);
    dao::Transaction transaction(*m_database);
    if (definition->ObjectKey() == QString::fromUtf16(kCustomerKey)) {
        m_database->DeleteRows(QStringLiteral("Orders"), QStringLiteral("CustomerID"), recordID);
    }
    definition->Collection()->Delete(QVariant(recordID));
    transaction.commit();
}

bool DeskApplication::completeRecord(const QString& objectKey, qint64 recordID, qint64 customerID) {
    const bool isOrder = objectKey == QString::fromUtf16(kOrderKey);
    const Ref<IRecord> record = ObjectDefinition(objectKey)->Collection()->Item(recordID);
    const QVariant today = QDateTime(m_engine.clock.now().date(), QTime(0, 0));
    const dao::ValueList defaults =
        isOrder ? dao::ValueList{{QStringLiteral("OrderNo"),
                                  QStringLiteral("A%1").arg(kFirstOrderNumber + recordID)},
                                 {QStringLiteral("OrderDate"), today},
                                 {QStringLiteral("CustomerID"),
                                  customerID == 0 ? QVariant() : QVariant(customerID)}}
                : dao::ValueList{{QStringLiteral("CustomerNo"),
                                  QStringLiteral("C%1").arg(recordID, 6, 10, QLatin1Char('0'))},
                                 {QStringLiteral("CustomerSince"), today}};
    record->BeginMultipleFieldUpdate();
    for (const dao::ValueList::Entry& entry : defaults) {
        if (record->value(entry.name).isNull() && !entry.value.isNull()) {
            record->MultipleUpdateFieldValues().set(entry.name, entry.value);
        }
    }
    const bool filled = !record->MultipleUpdateFieldValues().isEmpty();
    record->EndMultipleFieldUpdate();
    return filled;
}

Ref<dao::Database> DeskApplication::DAODatabase() {
    return m_database;
}

Ref<dao::Workspace> DeskApplication::DAOWorkspace() {
    return dao::createWorkspace(m_engine);
}

QString DeskApplication::Version() {
    return QStringLiteral("%1.%2.%3")
        .arg(YRW_VERSION_MAJOR)
        .arg(YRW_VERSION_MINOR)
        .arg(YRW_VERSION_REVISION);
}

HostDataHelper* DeskApplication::DB() {
    return &m_helper;
}

bool DeskApplication::Login(const QString& code, const QString& /*password*/) {
    logIn(code);
    return true;
}

Ref<IUser> DeskApplication::CurrentUser() {
    return query<IUser>(Users()->Item(QVariant(m_userID)));
}

void DeskApplication::setCurrentUser(const Ref<IUser>& user) {
    becomeUser(user->value(QStringLiteral("RecordID")).toLongLong(),
               user->value(QStringLiteral("Code")).toString());
}

QString DeskApplication::Name() {
    return QStringLiteral("Yarrowen Desk");
}

QString DeskApplication::ProgID() {
    return QString::fromUtf16(kDeskProgID);
}

void DeskApplication::Terminate() {
    m_database.reset();
    if (m_workspace->isOpen()) {
        m_workspace->Close();
    }
}

Ref<yrw::ICollection> DeskApplication::ICollection(const QString& name) {
    using Maker = Ref<yrw::ICollection> (*)(const Ref<IApplication>&);
    static constexpr std::pair<const char16_t*, Maker> kMakers[] = {{u"Customers", makeCustomers},
                                                                    {u"Orders", makeOrders},
                                                                    {u"Users", makeUsers},
                                                                    {u"Groups", makeGroups}};
    for (const auto& [known, maker] : kMakers) {
        if (name.compare(QString::fromUtf16(known), Qt::CaseInsensitive) == 0) {
            return maker(Ref<IApplication>(this));
        }
    }
    return nullptr;
}

Ref<yrw::ICollection> DeskApplication::Users() {
    return makeUsers(Ref<IApplication>(this));
}

Ref<IObjectDefinition> DeskApplication::ObjectDefinition(const QString& objectKey) {
    for (const KindOfRecord& kind : kKinds) {
        if (objectKey.compare(QString::fromUtf16(kind.key), Qt::CaseInsensitive) == 0) {
            return make<DeskObjectDefinition>(kind, Ref<IApplication>(this));
        }
    }
    return nullptr;
}

QStringList DeskApplication::ObjectDefinitionKeys() {
    QStringList keys;
    for (const KindOfRecord& kind : kKinds) {
        keys += QString::fromUtf16(kind.key);
    }
    return keys;
}

QString DeskApplication::UserName(const QString& code) {
    const auto found = m_users.constFind(code.toUpper());
    return found == m_users.constEnd() ? code : found->useName;
}

bool DeskApplication::ShowHelp(int topic) {
    return m_help && m_help(topic);
}

Ref<yrw::ICollection> DeskApplication::CreateReports() {
    return makeReports();
}

} // namespace yrw
