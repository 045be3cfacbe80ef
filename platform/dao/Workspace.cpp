#include "platform/component/AutomationError.h"
#include "platform/dao/Database.h"
#include "platform/dao/Engine.h"

#include <utility>

namespace yrw::dao {

Workspace::Workspace(std::unique_ptr<Engine> engine) : m_engine(std::move(engine)) {}

Workspace::~Workspace() = default;

bool Workspace::isOpen() const {
    return m_isOpen;
}

void Workspace::requireOpen() const {
    if (!m_isOpen) {
        throw AutomationError(kErrorObjectClosed, QStringLiteral("YRW.Workspace"),
                              QStringLiteral("The workspace is closed."));
    }
}

Ref<Database> Workspace::keep(std::shared_ptr<Connection> connection) {
    std::erase_if(m_connections, [](const auto& each) { return each.expired(); });
    m_connections.push_back(connection);
    return make<Database>(this, std::move(connection));
}

Ref<Database> Workspace::OpenDatabase(const QString& path, const OpenOptions& options) {
    requireOpen();
    return keep(m_engine->open(path, options.readOnly));
}

Ref<Database> Workspace::CreateDatabase(const QString& path) {
    requireOpen();
    return keep(m_engine->create(path));
}

std::unique_ptr<DamagedFile> Workspace::openDamaged(const QString& path) {
    requireOpen();
    return m_engine->openDamaged(path);
}

void Workspace::Close() {
    m_isOpen = false;
    for (const auto& each : std::exchange(m_connections, {})) {
        if (const auto connection = each.lock()) {
            connection->close();
        }
    }
}

} // namespace yrw::dao
