#include "host/desk/AddInLoader.h"

#include "framework/ErrorGuards.h"

namespace yrw {

AddInLoader::AddInLoader(const Services& services, CreateObject create)
    : m_services(services), m_create(std::move(create)) {}

AddInLoader::~AddInLoader() {
    unload();
}

bool AddInLoader::load(const QString& programId, IHostComponent& component) {
    if (m_addIn) {
        return true;
    }
    try {
        const Ref<IAddIn> addIn = query<IAddIn>(m_create(programId));
        if (!addIn) {
            throw AutomationError(kErrorCannotCreateObject, QStringLiteral("YRWDesk.AddInLoader"),
                                  QStringLiteral("'%1' is not an add-in.").arg(programId));
        }
        addIn->setComponent(&component);
        m_addIn = addIn;
    } catch (...) {
        m_services.prompt.message(
            QStringLiteral("The add-in could not be loaded. You can work without it.\r\r%1")
                .arg(currentError().description()),
            QStringLiteral("Add-in"), PromptIcon::Exclamation);
        return false;
    }
    activate();
    return true;
}

void AddInLoader::unload() {
    if (!m_addIn) {
        return;
    }
    // Let go of before it is told: whatever its end sets off finds no add-in here.
    const Ref<IAddIn> addIn = std::exchange(m_addIn, nullptr);
    ignoreErrors([&] { addIn->DeActivate(); });
    ignoreErrors([&] { addIn->setComponent(nullptr); });
}

bool AddInLoader::activate() {
    bool ready = false;
    reportErrors(m_services.utility, QStringLiteral("YRWDesk.AddInLoader.Activate"),
                 QStringLiteral("The add-in could not be activated."), QStringLiteral("Add-in"),
                 [&] { ready = m_addIn && m_addIn->Activate(); });
    return ready;
}

void AddInLoader::deactivate() {
    ignoreErrors([&] {
        if (m_addIn) {
            m_addIn->DeActivate();
        }
    });
}

QString AddInLoader::description() const {
    QString text;
    ignoreErrors([&] {
        if (m_addIn) {
            text = m_addIn->Name() + u' ' + m_addIn->Version();
        }
    });
    return text.isEmpty() ? QStringLiteral("none loaded") : text;
}

} // namespace yrw
