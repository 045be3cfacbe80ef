#pragma once

#include <QString>

namespace yrw {

class RichTextBox;

/// Appends text after the last paragraph of a box, or as a paragraph of its own, and puts the
/// cursor behind it. What is typed behind a bold piece is not bold.
void appendText(RichTextBox& box, const QString& text, bool bold, bool newParagraph);

} // namespace yrw
