#include "platform/dao/Rows.h"

#include "platform/component/AutomationError.h"

#include <utility>

namespace yrw::dao {

void raiseUnsupported(const char* what) {
    throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Recordset"),
                          QStringLiteral("This kind of recordset does not support %1.")
                              .arg(QString::fromLatin1(what)));
}

Rows::Rows(Connection& connection, Query query)
    : m_connection(&connection), m_query(std::move(query)) {
    connection.addHolder(this);
}

Rows::~Rows() {
    if (m_connection != nullptr) {
        m_connection->removeHolder(this);
    }
}

void Rows::close() noexcept {
    if (m_connection != nullptr) {
        drop();
        std::exchange(m_connection, nullptr)->removeHolder(this);
    }
}

// What most types can and one or two cannot.
void Rows::toLast() {
    raiseUnsupported("moving to the last row");
}
void Rows::previous() {
    raiseUnsupported("moving back");
}
void Rows::move(qint64) {
    raiseUnsupported("moving several rows");
}
qint64 Rows::position() const {
    raiseUnsupported("positions");
}
void Rows::setPosition(qint64) {
    raiseUnsupported("positions");
}
std::unique_ptr<Rows> Rows::clone() const {
    raiseUnsupported("clones");
}
void Rows::setIndex(const QString&) {
    raiseUnsupported("indexes");
}
void Rows::seek(QStringView, std::span<const QVariant>) {
    raiseUnsupported("seeks");
}
bool Rows::noMatch() const {
    raiseUnsupported("seeks");
}
qint64 Rows::key() const {
    raiseUnsupported("changes");
}

} // namespace yrw::dao
