#pragma once

#include "platform/rtf/Model.h"

namespace yrw::richtext {

/// How much of tables the screen lays out at once, in the units of `workOf` of some two millionths
/// of a second.
inline constexpr double kMostTableWork = 20000;
/// The same for all rows of a document that hold other tables, which are all laid out in the end.
inline constexpr double kMostNestedWork = 200000;

/// The work that a paragraph of so many characters makes in the cell of so many tables. The toolkit
/// lays a cell out several times for each time that the table around it is laid out.
[[nodiscard]] double workOf(int characters, int tables);

/// Shows the cells of tables that are too much work as paragraphs: in each row of an outermost
/// table, the innermost tables first, and at last the row itself. `around` is the number of tables
/// that the text is put into; none of more than `rtf::kMostNested` in all is left. True when some
/// were flattened: then the document holds less than it did.
bool flattenTables(rtf::Document& document, int around = 0);

/// Puts a line before the text that tells its reader something; it is none of the note's own.
void addNotice(rtf::Document& document, const QString& text);

} // namespace yrw::richtext
