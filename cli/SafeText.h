#pragma once

#include <QByteArray>
#include <QString>

namespace yrw {

// Texts of notes come from anybody. What stands in them must not reach a terminal as a command, nor
// a spreadsheet as a formula.

/// A text fit for one line of a terminal: control characters and line ends become blanks.
[[nodiscard]] QString onOneLine(const QString& text);
/// A text with the line ends of a shell, ending in one; other control characters but tabs become
/// blanks.
[[nodiscard]] QString shellText(const QString& text);
/// UTF-8 without the bytes that a terminal takes for commands: each control character but tabs and
/// line ends becomes a question mark.
[[nodiscard]] QByteArray forTerminal(const QByteArray& utf8);
/// JSON with every control character escaped; the value stays the same.
[[nodiscard]] QByteArray escapedJson(const QByteArray& json);
/// A text as a cell of a table: one that a spreadsheet would take for a formula begins with an
/// apostrophe; without control characters.
[[nodiscard]] QString harmlessCell(const QString& text);
/// A text for formats that have no way to write control characters: without them, except for tabs
/// and line ends.
[[nodiscard]] QString withoutControls(QString text);

} // namespace yrw
