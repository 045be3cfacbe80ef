#include "platform/component/NamedCalls.h"

#include "platform/component/AutomationError.h"

namespace yrw {

INamedCalls::~INamedCalls() = default;

QVariant callByName(INamedCalls* object, const QString& name, const QVariantMap& arguments) {
    if (object == nullptr) {
        throw AutomationError(kErrorObjectRequired, name, QStringLiteral("Object required"));
    }
    return object->callByName(name, arguments);
}

} // namespace yrw
