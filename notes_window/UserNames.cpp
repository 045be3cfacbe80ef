#include "notes_window/UserNames.h"

#include "framework/ErrorGuards.h"
#include "store/StoreContext.h"

namespace yrw {

QString UserNames::of(const QString& code) {
    const auto known = m_names.constFind(code);
    if (known != m_names.constEnd()) {
        return *known;
    }
    QString name = code;
    ignoreErrors(
        [&] { name = code.isEmpty() ? QString() : m_context.hostApplication()->UserName(code); });
    m_names.insert(code, name);
    return name;
}

QString UserNames::ofCurrentUser() const {
    const Ref<IUser> user = m_context.currentUser();
    if (!user) {
        return {};
    }
    return HostUtility::NullToText(user->value(QStringLiteral("FirstName"))) + u' ' +
           HostUtility::NullToText(user->value(QStringLiteral("LastName")));
}

} // namespace yrw
