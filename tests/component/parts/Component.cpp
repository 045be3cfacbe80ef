// A component whose classes are named after what goes wrong with them.
#include "platform/component/AutomationError.h"
#include "platform/component/ClassFactory.h"
#include "platform/component/NamedCalls.h"

#include <cstring>

namespace {

using yrw::Counted;
using yrw::Ref;

class Greeter final : public Counted, public yrw::INamedCalls {
public:
    QVariant callByName(const QString& name, const QVariantMap& arguments) override {
        if (name != u"Greet") {
            throw yrw::AutomationError(yrw::kErrorMemberNotFound, name,
                                       QStringLiteral("No such member"));
        }
        return QString(u"Hello, " + arguments.value(QStringLiteral("Name")).toString());
    }
};

class Factory final : public yrw::IClassFactory {
public:
    enum class Fault { None, OldContract, MakesNothing, Throws };
    explicit Factory(Fault fault) : m_fault(fault) {}

    int contractVersion() const override {
        return m_fault == Fault::OldContract ? yrw::kContractVersion - 1 : yrw::kContractVersion;
    }
    Ref<Counted> createInstance() override {
        if (m_fault == Fault::Throws) {
            throw yrw::AutomationError(yrw::kErrorDiskFull, QStringLiteral("Test"),
                                       QStringLiteral("The disk is full."));
        }
        return m_fault == Fault::MakesNothing ? Ref<Counted>() : yrw::make<Greeter>();
    }
    void lockServer(bool) override {}

private:
    Fault m_fault;
};

} // namespace

extern "C" __attribute__((visibility("default"))) int
DllGetClassObject(const char* classId, yrw::IClassFactory** factory) {
    static Factory good(Factory::Fault::None);
    static Factory old(Factory::Fault::OldContract);
    static Factory empty(Factory::Fault::MakesNothing);
    static Factory throwing(Factory::Fault::Throws);
    const struct {
        const char* id;
        Factory* factory;
    } classes[] = {
        {"{good}", &good}, {"{old}", &old}, {"{empty}", &empty}, {"{throws}", &throwing}};
    for (const auto& known : classes) {
        if (std::strcmp(known.id, classId) == 0) {
            *factory = known.factory;
            return yrw::kComponentOk;
        }
    }
    return yrw::kComponentClassNotAvailable;
}
