#pragma once

#include "store/DatabaseCheck.h"

namespace yrw {

/// Looks at every row of the tables with a key.
[[nodiscard]] std::vector<Finding> findRowProblems(dao::Database& database,
                                                   const CheckRules& rules);

} // namespace yrw
