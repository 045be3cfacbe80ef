// The component's entry points: the only names that its library exports.
#include "addin/AddIn.h"
#include "framework/ErrorGuards.h"
#include "platform/component/ClassRegistry.h"

namespace {

constexpr char kClassId[] = "{5B0D6F0E-3C1B-4B57-9C0E-6A1E9D2F7A41}";

yrw::ClassRegistration registration() {
    return {QStringLiteral("YRWNOTES.AddIn"), QString::fromLatin1(kClassId),
            yrw::Module1::componentFile()};
}

/// Makes `AddIn` objects.
class AddInFactory final : public yrw::IClassFactory {
public:
    int contractVersion() const override { return yrw::kContractVersion; }
    yrw::Ref<yrw::Counted> createInstance() override { return yrw::make<yrw::AddIn>(); }
    void lockServer(bool lock) override { m_locks += lock ? 1 : -1; }
    [[nodiscard]] bool isLocked() const noexcept { return m_locks > 0; }

private:
    int m_locks = 0;
};

AddInFactory& factory() {
    static AddInFactory instance;
    return instance;
}

} // namespace

extern "C" {

int DllGetClassObject(const char* classId, yrw::IClassFactory** result) {
    if (result == nullptr || classId == nullptr || qstricmp(classId, kClassId) != 0) {
        return yrw::kComponentClassNotAvailable;
    }
    *result = &factory();
    return yrw::kComponentOk;
}

int DllCanUnloadNow() {
    const bool isFree = yrw::Module1::instance().addInCount() == 0 && !factory().isLocked();
    return isFree ? yrw::kComponentOk : yrw::kComponentNo;
}

int DllRegisterServer() {
    const bool done = yrw::ignoreErrors([] { yrw::ClassRegistry().registerClass(registration()); });
    return done ? yrw::kComponentOk : yrw::kComponentFailed;
}

int DllUnregisterServer() {
    const bool done =
        yrw::ignoreErrors([] { yrw::ClassRegistry().unregisterClass(registration().programId); });
    return done ? yrw::kComponentOk : yrw::kComponentFailed;
}

} // extern "C"
