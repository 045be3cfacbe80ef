#pragma once

#include "framework/HostUtility.h"

#include <utility>

namespace yrw {

/// Runs a procedure that the user started. A failure is reported with the fixed message and title
/// and ends the procedure; true when there was none.
template <class Action>
bool reportErrors(const HostUtility& utility, const QString& source, const QString& message,
                  const QString& title, Action&& action) {
    try {
        std::forward<Action>(action)();
        return true;
    } catch (...) {
        utility.ReportError(currentError(), source, message, title);
        return false;
    }
}

/// Runs a handler of a host control or a timer: a failure ends it silently.
template <class Action>
bool ignoreErrors(Action&& action) noexcept {
    try {
        std::forward<Action>(action)();
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace yrw
