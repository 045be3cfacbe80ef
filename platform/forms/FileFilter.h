#pragma once

#include <QStringList>

namespace yrw {

/// The name filters of a file dialog from pairs of caption and patterns: "Text|*.txt;*.md|All|*.*|"
/// gives "Text (*.txt *.md)" and "All (*)". An odd last caption is left out; nothing gives all
/// files.
[[nodiscard]] QStringList nameFilters(const QString& pairs);

/// Suffix of the first pattern, without its dot; empty when it names none.
[[nodiscard]] QString firstSuffix(const QString& pairs);

} // namespace yrw
