#pragma once

#include <QString>

class QPrinter;

namespace yrw {

class RichTextBox;

/// What stands above the text on every page.
struct NoteHeading {
    QString subject;
    QString details; ///< owner, author and date in one line
};

/// Paints the text of a box on the pages that the printer was asked for, each with the heading and
/// "Page x of y". Sizes are points, as on the screen at its own size; paper and margins are the
/// printer's.
void printNote(QPrinter& printer, RichTextBox& text, const NoteHeading& heading);

} // namespace yrw
