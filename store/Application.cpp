#include "store/Application.h"

#include "framework/ErrorGuards.h"
#include "platform/component/AutomationError.h"

namespace yrw {

namespace {

/// Members that this application refuses.
enum class Refused {
    OpenDatabase,
    ObjectKeys,
    Login,
    CurrentUser,
    SetupODBC,
    ODBCDSNPath,
    CanUserAccessICollection,
    CanUserEditIRecord,
    CanUserAccessICollectionDelete,
    CanUserAccessICollectionRecordset,
    CanUserAccessICollectionItems,
    CanUserAccessICollectionAdd,
    XDatabase,
};

struct Refusal {
    Refused member;
    const char16_t* description;
    const char16_t* source;
};

constexpr const char16_t* kUnsupportedMember = u"Interface not supported for by this Object";
constexpr const char16_t* kUnsupportedCheck = u"Interface is not supported";

/// The words and sources are part of the contract, their odd spelling and the source that two
/// checks share included.
constexpr Refusal kRefusals[] = {
    {Refused::OpenDatabase, kUnsupportedMember, u"YRWNOTES.IApplication_OpenDatabase"},
    {Refused::ObjectKeys, kUnsupportedMember, u"YRWNOTES.IApplication_ObjectKeys"},
    {Refused::Login, kUnsupportedMember, u"YRWNOTES.IApplication_Login"},
    {Refused::CurrentUser, kUnsupportedMember, u"YRWNOTES.IApplication_CurrentUser"},
    {Refused::SetupODBC, kUnsupportedMember, u"YRWNOTES.IApplication_SetupODBC"},
    {Refused::ODBCDSNPath, kUnsupportedMember, u"YRWNOTES.IApplication_ODBCDSNPath"},
    {Refused::CanUserAccessICollection, kUnsupportedCheck,
     u"YRWNotes.IApplication_CanUserAccessICollection"},
    {Refused::CanUserEditIRecord, kUnsupportedCheck, u"YRWNotes.CanUserAccessICollectionRecordset"},
    {Refused::CanUserAccessICollectionDelete, kUnsupportedCheck,
     u"YRWNotes.CanUserAccessICollectionDelete"},
    {Refused::CanUserAccessICollectionRecordset, kUnsupportedCheck,
     u"YRWNotes.CanUserAccessICollectionRecordset"},
    {Refused::CanUserAccessICollectionItems, kUnsupportedCheck,
     u"YRWNotes.CanUserAccessICollectionItems"},
    {Refused::CanUserAccessICollectionAdd, kUnsupportedCheck,
     u"YRWNotes.CanUserAccessICollectionAdd"},
    {Refused::XDatabase, kUnsupportedMember, u"YRWNOTES.IApplication_XDatabase"},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < std::size(kRefusals); ++i) {
        if (static_cast<std::size_t>(kRefusals[i].member) != i) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder(), "the table is looked up by position");

[[noreturn]] void refuse(Refused member) {
    const Refusal& refusal = kRefusals[static_cast<std::size_t>(member)];
    throw AutomationError(kErrorNotSupported, QString::fromUtf16(refusal.source),
                          QString::fromUtf16(refusal.description));
}

Ref<IHostApplication> requireHost(StoreContext& context) {
    Ref<IHostApplication> host = context.hostApplication();
    if (!host) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.Application"),
                              QStringLiteral("Object required"));
    }
    return host;
}

} // namespace

Application::Application(StoreContext& context) : m_context(context) {}

Application::~Application() {
    Application::Terminate();
}

Ref<yrw::Notes> Application::Notes() {
    Ref<yrw::Notes> notes = make<yrw::Notes>(m_context);
    notes->setParent(Ref<Counted>(this));
    notes->setApplication(Ref<IApplication>(this));
    return notes;
}

Ref<yrw::Reminders> Application::Reminders() {
    Ref<yrw::Reminders> reminders = make<yrw::Reminders>();
    reminders->setParent(Ref<Counted>(this));
    reminders->setApplication(Ref<IApplication>(this));
    return reminders;
}

Ref<IRecord> Application::ActiveSystemSettings(bool refresh) {
    if (!m_activeSettings || refresh) {
        m_activeSettings = SystemSettings()->Item(QVariant(0));
    }
    return m_activeSettings;
}

void Application::OpenDatabase(const QString& /*path*/) {
    refuse(Refused::OpenDatabase);
}

Ref<dao::Database> Application::DAODatabase() {
    return m_context.database();
}

Ref<dao::Workspace> Application::DAOWorkspace() {
    return m_context.workspace();
}

QString Application::Version() {
    return m_context.version();
}

Ref<yrw::ICollection> Application::SystemSettings() {
    Ref<yrw::ICollection> settings = make<yrw::SystemSettings>();
    settings->setParent(Ref<Counted>(this));
    settings->setApplication(Ref<IApplication>(this));
    return settings;
}

HostDataHelper* Application::DB() {
    return &m_context.dataHelper();
}

QStringList Application::ObjectKeys() {
    refuse(Refused::ObjectKeys);
}

Ref<yrw::ICollection> Application::Reports() {
    Ref<yrw::ICollection> reports = requireHost(m_context)->CreateReports();
    if (reports) {
        reports->setApplication(Ref<IApplication>(this));
    }
    return reports;
}

bool Application::Login(const QString& /*code*/, const QString& /*password*/) {
    refuse(Refused::Login);
}

Ref<IUser> Application::CurrentUser() {
    refuse(Refused::CurrentUser);
}

void Application::setCurrentUser(const Ref<IUser>& /*user*/) {
    refuse(Refused::CurrentUser);
}

Ref<IUser> Application::CurrentIUser() {
    return m_context.currentUser();
}

void Application::SetupODBC() {
    refuse(Refused::SetupODBC);
}

Ref<IRecord> Application::CurrentSettings(bool refresh) {
    return ActiveSystemSettings(refresh);
}

QString Application::Name() {
    return QStringLiteral("Yarrowen Notes Server");
}

QString Application::ODBCDSNPath() {
    refuse(Refused::ODBCDSNPath);
}

QString Application::ProgID() {
    return QStringLiteral("YRWNOTES");
}

Ref<ISession> Application::Session() {
    return requireHost(m_context)->Session();
}

QString Application::DSNName() {
    return QStringLiteral("");
}

void Application::Terminate() {
    m_activeSettings.reset(); // it holds the application, which holds it
    ignoreErrors([this] { m_context.closeDatabase(); });
}

Ref<yrw::ICollection> Application::ICollection(const QString& /*name*/) {
    return nullptr;
}

Ref<yrw::ICollection> Application::Users() {
    return requireHost(m_context)->Users();
}

Ref<yrw::ICollection> Application::ObjectKeyPolicies() {
    return nullptr;
}

Ref<yrw::ICollection> Application::ObjectKeyPolicyPermissions() {
    return nullptr;
}

bool Application::CanUserAccessICollection(const Ref<yrw::ICollection>& /*collection*/) {
    refuse(Refused::CanUserAccessICollection);
}

bool Application::CanUserEditIRecord(const Ref<IRecord>& /*record*/) {
    refuse(Refused::CanUserEditIRecord);
}

bool Application::CanUserAccessICollectionDelete(const Ref<yrw::ICollection>& /*collection*/) {
    refuse(Refused::CanUserAccessICollectionDelete);
}

bool Application::CanUserAccessICollectionRecordset(const Ref<yrw::ICollection>& /*collection*/) {
    refuse(Refused::CanUserAccessICollectionRecordset);
}

bool Application::CanUserAccessICollectionItems(const Ref<yrw::ICollection>& /*collection*/) {
    refuse(Refused::CanUserAccessICollectionItems);
}

bool Application::CanUserAccessICollectionAdd(const Ref<yrw::ICollection>& /*collection*/) {
    refuse(Refused::CanUserAccessICollectionAdd);
}

Ref<dao::Database> Application::XDatabase() {
    refuse(Refused::XDatabase);
}

} // namespace yrw
