#pragma once

#include <QStringList>

namespace yrw {

// Which rows a grid of the desk asks for, as conditions and orders of the data layer.

/// Rows of which one of the fields holds the text, where `*`, `?` and `[` stand for themselves. A
/// text with both kinds of quote finds any character in place of one kind. No fields find nothing:
/// an empty condition.
[[nodiscard]] QString rowsHolding(const QString& text, const QStringList& fields);
/// Rows that fit both conditions; an empty one leaves none out.
[[nodiscard]] QString rowsOfBoth(const QString& first, const QString& second);
/// The order by one field; none for an empty name.
[[nodiscard]] QString orderBy(const QString& field, bool descending);

} // namespace yrw
