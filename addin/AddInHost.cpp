#include "addin/AddInHost.h"

#include "addin/HostQuestions.h"
#include "framework/ErrorGuards.h"

namespace yrw {

void AddInHost::take(IHostComponent* from) noexcept {
    component = from;
    const auto take = [this](auto& member, auto ask) {
        member.reset();
        ignoreErrors([&] {
            if (component) {
                member = ask();
            }
        });
    };
    const auto gridOf = [](const GuardedPtr<IGridController>& controller) {
        return controller ? controller->Grid() : nullptr;
    };
    take(hostInterface, [this] { return component->Interface(); });
    take(mobjUpperGridClass, [this] { return component->UpperController(); });
    take(mobjLowerGridClass, [this] { return component->LowerController(); });
    take(dbgUpper, [&] { return gridOf(mobjUpperGridClass); });
    take(dbgLower, [&] { return gridOf(mobjLowerGridClass); });
    take(upperSplits, [this] { return dbgUpper ? dbgUpper->Splits() : nullptr; });
    take(lowerSplits, [this] { return dbgLower ? dbgLower->Splits() : nullptr; });
    m_progID.clear();
    ignoreErrors([this] {
        const Ref<IHostApplication> host = application();
        m_progID = host ? host->ProgID() : QString();
    });
    take(atbComponent, [this] { return component->Toolbar(); });
    take(atbInterface, [this] { return hostInterface ? hostInterface->Toolbar() : nullptr; });
    take(stbMain, [this] { return component->StatusBar(); });
}

void AddInHost::requireProgID() {
    if (m_progID.isEmpty()) { // not given with the component; it may be by now
        ignoreErrors([this] { m_progID = requiredApplication()->ProgID(); });
    }
    if (m_progID.isEmpty()) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.AddIn.OpenDatabase"),
                              QStringLiteral("The host has no program id."));
    }
}

Ref<IHostApplication> AddInHost::application() const {
    return component ? component->Application() : nullptr;
}

Ref<IHostApplication> AddInHost::requiredApplication() const {
    return askedOfHost(u"application", [this] { return application(); });
}

Ref<IUser> AddInHost::requiredUser() const {
    const Ref<IHostApplication> host = requiredApplication();
    return askedOfHost(u"current user", [&] { return host->CurrentUser(); });
}

QString AddInHost::folder() const {
    const Ref<IHostApplication> host = requiredApplication();
    return HostUtility::FolderOfPath(
        askedOfHost(u"database", [&] { return host->DAODatabase(); })->Name());
}

Ref<IRecord> AddInHost::recordOf(const QString& objectKey, const QVariant& id) const noexcept {
    Ref<IRecord> record;
    ignoreErrors([&] {
        const Ref<IHostApplication> host = application();
        const Ref<IObjectDefinition> definition =
            host && !objectKey.isEmpty() ? host->ObjectDefinition(objectKey) : nullptr;
        record = definition ? definition->Collection()->Item(id) : nullptr;
    });
    return record;
}

Ref<IRecord> AddInHost::currentRecord() const {
    IGridController* const controller = hostInterface->CurrentController();
    return controller != nullptr ? controller->CurrentRecord() : nullptr;
}

bool AddInHost::isBusy() const noexcept {
    bool busy = false;
    ignoreErrors([&] {
        IGridController* const controller =
            hostInterface ? hostInterface->CurrentController() : nullptr;
        busy = controller != nullptr && controller->Busy();
    });
    return busy;
}

QWidget* AddInHost::window() const noexcept {
    QWidget* window = nullptr;
    ignoreErrors([&] { window = hostInterface ? hostInterface->Window() : nullptr; });
    return window;
}

void AddInHost::showStatus(const QString& text) const noexcept {
    ignoreErrors([&] {
        if (hostInterface) {
            hostInterface->ShowStatus(text);
        }
    });
}

} // namespace yrw
