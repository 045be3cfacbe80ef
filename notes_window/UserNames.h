#pragma once

#include <QHash>
#include <QString>

namespace yrw {

class StoreContext;

/// The names of users as the host knows them, each asked for once.
/// Lifetime: the context outlives it. Thread: the user-interface thread.
class UserNames {
public:
    explicit UserNames(StoreContext& context) : m_context(context) {}

    /// The name behind a user's code; the code where the host gives none.
    [[nodiscard]] QString of(const QString& code);
    /// First and last name of the user who works; empty without one.
    [[nodiscard]] QString ofCurrentUser() const;
    /// The host is asked anew.
    void forget() { m_names.clear(); }

private:
    StoreContext& m_context;
    QHash<QString, QString> m_names;
};

} // namespace yrw
