#pragma once

#include "platform/component/AutomationError.h"

#include <functional>

namespace yrw::test {

/// The error that an action raises; one with the number 0 when it raises none.
inline AutomationError raisedBy(const std::function<void()>& action) {
    try {
        action();
    } catch (const AutomationError& error) {
        return error;
    }
    return {0, {}, {}};
}

} // namespace yrw::test
