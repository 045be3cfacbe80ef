#pragma once

#include "framework/HostDataHelper.h"

namespace yrw {

// What the notes database says about the marks in the host's grids.

/// Background of marked rows, &H00BBGGRR: the stored one; where there is none, it is 0 or it cannot
/// be read, the default.
[[nodiscard]] int readHighlightColour(const HostDataHelper& helper) noexcept;

/// True when the field is defined as linked to the notes in a layout of that name. One query.
[[nodiscard]] bool isLinkedColumn(const HostDataHelper& helper, const QString& field,
                                  const QString& layoutName);

} // namespace yrw
