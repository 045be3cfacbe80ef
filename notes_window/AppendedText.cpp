#include "notes_window/AppendedText.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/RichTextBox.h"

#include <QTextBlockFormat>
#include <QTextCursor>

namespace yrw {

namespace {

/// The format behind the text: what stands behind a link or an object is no part of it.
QTextCharFormat formatBehind(const QTextCursor& cursor) {
    QTextCharFormat format = cursor.charFormat();
    for (const int property :
         {int(richtext::kField), int(richtext::kInlineId), int(QTextFormat::ObjectType),
          int(QTextFormat::IsAnchor), int(QTextFormat::AnchorHref)}) {
        format.clearProperty(property);
    }
    return format;
}

} // namespace

void appendText(RichTextBox& box, const QString& text, bool bold, bool newParagraph) {
    QTextCursor cursor(box.document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (newParagraph && !box.Text().isEmpty()) {
        cursor.insertBlock();
    }
    QTextCharFormat plain = formatBehind(cursor);
    if (bold) {
        QTextCharFormat strong = plain;
        strong.setFontWeight(QFont::Bold);
        cursor.insertText(text, strong);
        // What follows a bold piece is neither bold nor coloured.
        plain.setFontWeight(QFont::Normal);
        plain.clearForeground();
        cursor.insertText(QStringLiteral(" "), plain);
    } else {
        cursor.insertText(text + u' ', plain);
    }
    cursor.endEditBlock();
    box.setTextCursor(cursor);
    if (bold) {
        box.selection().setBold(false);
    }
    box.ensureCursorVisible();
}

} // namespace yrw
