#include "platform/component/Counted.h"

#include "platform/component/AutomationError.h"

namespace yrw {

void detail::raiseObjectRequired() {
    throw AutomationError(kErrorObjectRequired, QStringLiteral("YRW"),
                          QStringLiteral("Object required"));
}

Counted::~Counted() = default;

void Counted::release() const noexcept {
    if (--m_count == 0) {
        delete this;
    }
}

} // namespace yrw
