#include "framework/HostApplicationBase.h"

#include "platform/component/AutomationError.h"

namespace yrw {

namespace {

class UserSession final : public ISession {
public:
    explicit UserSession(Ref<IApplication> application) : m_application(std::move(application)) {}
    [[nodiscard]] Ref<IUser> User() override { return m_application->CurrentUser(); }

private:
    Ref<IApplication> m_application;
};

} // namespace

void HostApplicationBase::refuse(const char* member) {
    throw AutomationError(kErrorNotSupported, ProgID() + u'.' + QLatin1String(member),
                          QStringLiteral("%1 does not support this.").arg(Name()));
}

void HostApplicationBase::OpenDatabase(const QString& /*path*/) {
    refuse("OpenDatabase");
}

Ref<yrw::ICollection> HostApplicationBase::SystemSettings() {
    refuse("SystemSettings");
}

QStringList HostApplicationBase::ObjectKeys() {
    return ObjectDefinitionKeys();
}

Ref<yrw::ICollection> HostApplicationBase::Reports() {
    const Ref<yrw::ICollection> reports = CreateReports();
    if (reports) {
        reports->setApplication(Ref<IApplication>(this));
    }
    return reports;
}

bool HostApplicationBase::Login(const QString& /*code*/, const QString& /*password*/) {
    refuse("Login");
}

Ref<IUser> HostApplicationBase::CurrentIUser() {
    return CurrentUser();
}

void HostApplicationBase::SetupODBC() {
    refuse("SetupODBC");
}

Ref<IRecord> HostApplicationBase::CurrentSettings(bool /*refresh*/) {
    refuse("CurrentSettings");
}

QString HostApplicationBase::ODBCDSNPath() {
    refuse("ODBCDSNPath");
}

Ref<ISession> HostApplicationBase::Session() {
    return make<UserSession>(Ref<IApplication>(this));
}

QString HostApplicationBase::DSNName() {
    return {};
}

Ref<yrw::ICollection> HostApplicationBase::ICollection(const QString& /*name*/) {
    return nullptr;
}

Ref<yrw::ICollection> HostApplicationBase::ObjectKeyPolicies() {
    return nullptr;
}

Ref<yrw::ICollection> HostApplicationBase::ObjectKeyPolicyPermissions() {
    return nullptr;
}

bool HostApplicationBase::CanUserAccessICollection(const Ref<yrw::ICollection>& /*collection*/) {
    return true;
}

bool HostApplicationBase::CanUserEditIRecord(const Ref<IRecord>& /*record*/) {
    return true;
}

bool HostApplicationBase::CanUserAccessICollectionDelete(
    const Ref<yrw::ICollection>& /*collection*/) {
    return true;
}

bool HostApplicationBase::CanUserAccessICollectionRecordset(
    const Ref<yrw::ICollection>& /*collection*/) {
    return true;
}

bool HostApplicationBase::CanUserAccessICollectionItems(
    const Ref<yrw::ICollection>& /*collection*/) {
    return true;
}

bool HostApplicationBase::CanUserAccessICollectionAdd(const Ref<yrw::ICollection>& /*collection*/) {
    return true;
}

Ref<dao::Database> HostApplicationBase::XDatabase() {
    refuse("XDatabase");
}

Ref<IObjectDefinition> HostApplicationBase::ObjectDefinition(const QString& /*objectKey*/) {
    return nullptr;
}

QStringList HostApplicationBase::ObjectDefinitionKeys() {
    return {};
}

QString HostApplicationBase::ObjectDisplayName(const QString& useName) {
    return useName;
}

QString HostApplicationBase::UserName(const QString& code) {
    return code;
}

bool HostApplicationBase::ShowHelp(int /*topic*/) {
    return false;
}

Ref<yrw::ICollection> HostApplicationBase::CreateReports() {
    return nullptr;
}

} // namespace yrw
