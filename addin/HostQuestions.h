#pragma once

#include "platform/component/AutomationError.h"

#include <utility>

namespace yrw {

/// What a host answers to a question that the add-in cannot do without. Where it has no answer
/// (`kErrorObjectRequired`) or fails, the error says what was asked for.
template <class Ask>
auto askedOfHost(const char16_t* what, Ask&& ask) {
    const QString source = QStringLiteral("YRWNOTES.AddIn");
    decltype(std::forward<Ask>(ask)()) answer{};
    try {
        answer = std::forward<Ask>(ask)();
    } catch (...) {
        const AutomationError error = currentError();
        throw AutomationError(error.number(), source,
                              QStringLiteral("The host does not give its %1: %2")
                                  .arg(QString::fromUtf16(what), error.description()));
    }
    if (!answer) {
        throw AutomationError(kErrorObjectRequired, source,
                              QStringLiteral("The host has no %1.").arg(QString::fromUtf16(what)));
    }
    return answer;
}

} // namespace yrw
