#pragma once

#include <QMarginsF>

namespace yrw {

/// Margins of a printed page in millimetres, where the user chooses no others.
inline constexpr QMarginsF kPageMargins{20, 15, 20, 15};

} // namespace yrw
