#pragma once

#include "platform/component/WorkStep.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace yrw {

/// Order of two texts in the user's language, in that of English where the system names none:
/// letters first, then accents, then letter case. Negative, 0 or positive.
/// Thread: any.
[[nodiscard]] int compareTexts(QStringView a, QStringView b);

/// The places of texts in that order, equal ones as they stood; nothing when `goesOn` stopped it.
/// Texts of which none has a letter, such as dates, are ordered by their characters.
/// The texts may change while `goesOn` runs, since they are read before.
/// Thread: any.
[[nodiscard]] std::optional<std::vector<int>> orderOf(const std::vector<QStringView>& texts,
                                                      Qt::SortOrder order, const WorkStep& goesOn);

} // namespace yrw
