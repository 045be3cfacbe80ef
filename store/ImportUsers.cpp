#include "store/ImportUsers.h"

#include <algorithm>

namespace yrw {

ImportUsers::ImportUsers(const ImportChoices& choices) {
    for (auto map = choices.users.constBegin(); map != choices.users.constEnd(); ++map) {
        const User user = userFor(map.value(), choices.knownUsers);
        bool isNumber = false;
        const qint64 number = map.key().toLongLong(&isNumber);
        if (isNumber) {
            m_byNumber.insert(number, user);
        } else {
            m_byCode.insert(map.key().toLower(), user);
        }
    }
}

ImportUsers::User ImportUsers::userFor(const QString& text, const QList<UserName>& known) {
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    const auto found = std::find_if(known.begin(), known.end(), [&](const UserName& user) {
        return isNumber ? user.UserID == number
                        : user.UserCode.compare(text, Qt::CaseInsensitive) == 0;
    });
    if (found != known.end()) {
        return {found->UserID, found->UserCode};
    }
    if (isNumber) {
        return {number, {}};
    }
    m_unknown += text;
    return {std::nullopt, text};
}

void ImportUsers::mapAuthor(QVariant& number, QVariant& code) {
    if (m_byCode.isEmpty() && m_byNumber.isEmpty()) {
        return;
    }
    std::optional<User> user;
    if (const auto found = m_byCode.constFind(code.toString().toLower());
        !code.isNull() && found != m_byCode.constEnd()) {
        user = *found;
        if (!number.isNull() && user->number && !m_byNumber.contains(number.toLongLong())) {
            m_byNumber.insert(number.toLongLong(), *user);
        }
    } else if (const auto same = m_byNumber.constFind(number.toLongLong());
               !number.isNull() && same != m_byNumber.constEnd()) {
        user = *same;
    }
    if (!user) {
        return;
    }
    if (user->number) {
        number = *user->number;
    }
    if (!user->code.isEmpty()) {
        code = user->code;
    }
}

QVariant ImportUsers::mapNumber(const QVariant& number) const {
    const auto found = m_byNumber.constFind(number.toLongLong());
    return !number.isNull() && found != m_byNumber.constEnd() && found->number
               ? QVariant(*found->number)
               : number;
}

} // namespace yrw
