#pragma once

#include "store/ImportChoices.h"

namespace yrw {

/// Finds who a user of an old database is now.
/// Lifetime: one import. Thread: any, one at a time.
class ImportUsers {
public:
    explicit ImportUsers(const ImportChoices& choices);

    /// Maps an author; the number and the code of one belong together. Numbers that are met here
    /// with a mapped code mean the same user from then on.
    void mapAuthor(QVariant& number, QVariant& code);
    [[nodiscard]] QVariant mapNumber(const QVariant& number) const;
    /// Codes that users are mapped to and whose numbers nobody knows.
    [[nodiscard]] const QStringList& unknown() const noexcept { return m_unknown; }

private:
    /// A user as far as known.
    struct User {
        std::optional<qint64> number;
        QString code;
    };
    [[nodiscard]] User userFor(const QString& text, const QList<UserName>& known);

    QHash<QString, User> m_byCode; ///< in lower case
    QHash<qint64, User> m_byNumber;
    QStringList m_unknown;
};

} // namespace yrw
