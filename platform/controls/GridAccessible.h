#pragma once

namespace yrw {

/// Lets screen readers see the rows of record grids as items with their texts; once per process.
void installGridAccessibility();

} // namespace yrw
