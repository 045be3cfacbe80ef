#pragma once

namespace yrw {

/// Has screen readers get the name of a combo tool beside its text, which the toolkit gives as the
/// name. Done once for the process.
void installComboAccessibility();

} // namespace yrw
