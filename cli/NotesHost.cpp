#include "cli/NotesHost.h"

#include "framework/CollectionBase.h"
#include "platform/component/AutomationError.h"
#include "store/NotesDatabase.h"
#include "store/Schema.h"

#include <utility>

namespace yrw {

namespace {

const QString kUserID = QStringLiteral("UserID");
const QString kUserCode = QStringLiteral("UserCode");

const TableDifferences& userTable() {
    static const TableDifferences table{.TableName = schema::kTblUserNames,
                                        .QueryName = schema::kTblUserNames,
                                        .CollectionName = QStringLiteral("Users"),
                                        .ClassName = QStringLiteral("Users"),
                                        .CommonFieldName = kUserID,
                                        .ShortDisplayFieldName = QStringLiteral("UseName"),
                                        .KeyField = kUserID,
                                        .StoredQuery = schema::kTblUserNames};
    return table;
}

/// A remembered user; answers the names of a host's fields too.
class KnownUser final : public RecordBase, public IUser {
public:
    KnownUser() : RecordBase(userTable()) {}
    [[nodiscard]] Ref<dao::Field> Field(const QString& name) override {
        if (name == u"RecordID") {
            return RecordBase::Field(kUserID);
        }
        return RecordBase::Field(name == u"Code" ? kUserCode : name);
    }
    [[nodiscard]] Ref<IRecord> Group() override { return nullptr; }
};

class KnownUsers final : public CollectionBase {
public:
    KnownUsers() : CollectionBase(userTable()) {}

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override { return make<KnownUser>(); }
};

} // namespace

NotesHost::NotesHost(Ref<dao::Database> database, HostDataHelper& helper, const QString& userCode)
    : m_database(std::move(database)), m_helper(helper) {
    QStringList codes;
    QString first;
    for (const yrw::UserName& user : rememberedUsers(*m_database)) {
        codes += user.UserCode;
        const bool isWanted = userCode.isEmpty()
                                  ? first.isEmpty() || user.UserCode.compare(first) < 0
                                  : user.UserCode.compare(userCode, Qt::CaseInsensitive) == 0;
        if (isWanted) {
            first = user.UserCode;
            m_userID = user.UserID;
        }
    }
    if (m_userID == 0 && !userCode.isEmpty()) {
        codes.sort();
        throw AutomationError(kErrorRecordNotFound, QStringLiteral("yrwnotes"),
                              codes.isEmpty()
                                  ? QStringLiteral("There is no user '%1': %2 knows no users yet.")
                                        .arg(userCode, m_database->Name())
                                  : QStringLiteral("There is no user '%1'. The users are %2.")
                                        .arg(userCode, codes.join(QStringLiteral(", "))));
    }
}

Ref<dao::Database> NotesHost::DAODatabase() {
    return m_database;
}

Ref<dao::Workspace> NotesHost::DAOWorkspace() {
    return nullptr;
}

QString NotesHost::Version() {
    return QStringLiteral("%1.%2.%3")
        .arg(YRW_VERSION_MAJOR)
        .arg(YRW_VERSION_MINOR)
        .arg(YRW_VERSION_REVISION);
}

HostDataHelper* NotesHost::DB() {
    return &m_helper;
}

Ref<IUser> NotesHost::CurrentUser() {
    return m_userID == 0 ? Ref<IUser>() : query<IUser>(Users()->Item(QVariant(m_userID)));
}

void NotesHost::setCurrentUser(const Ref<IUser>& user) {
    m_userID = user ? user->value(kUserID).toLongLong() : 0;
}

QString NotesHost::Name() {
    return QStringLiteral("Yarrowen Notes");
}

QString NotesHost::ProgID() {
    const QStringList all = hostProgIDs();
    return all.size() == 1 ? all.first() : QString();
}

void NotesHost::Terminate() {
    m_database.reset();
}

Ref<yrw::ICollection> NotesHost::Users() {
    const Ref<yrw::ICollection> users = make<KnownUsers>();
    users->setApplication(Ref<IApplication>(this));
    return users;
}

QStringList NotesHost::hostProgIDs() const {
    return hostsOfNotes(*m_database);
}

} // namespace yrw
