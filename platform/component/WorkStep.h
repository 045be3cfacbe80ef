#pragma once

#include <functional>

namespace yrw {

/// Called now and then during long work with how far it is, in percent; false stops the work.
using WorkStep = std::function<bool(int percent)>;

} // namespace yrw
