#pragma once

#include <QStringView>

#include <functional>
#include <optional>
#include <vector>

namespace yrw {

/// Called now and then during long work with how far it is, in percent; false stops the work.
using WorkStep = std::function<bool(int percent)>;

/// Order of two texts: letter case is ignored first and decides between equals, and no locale
/// changes the order. Negative, 0 or positive.
[[nodiscard]] int compareTexts(QStringView a, QStringView b);

/// The places of texts in that order, those with equal texts as they stood; nothing when `goesOn`
/// stopped it. The texts may change while `goesOn` runs, since they are read before.
[[nodiscard]] std::optional<std::vector<int>> orderOf(const std::vector<QStringView>& texts,
                                                      Qt::SortOrder order, const WorkStep& goesOn);

} // namespace yrw
