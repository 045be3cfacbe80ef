#pragma once

#include "platform/prompt/Prompt.h"
#include "platform/rtf/Model.h"

#include <QFont>
#include <QMetaType>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextListFormat>

class QTextList;

Q_DECLARE_METATYPE(yrw::rtf::ParFormat)

namespace yrw::richtext {

/// The object type of pictures, embedded objects and kept groups in the text.
inline constexpr int kInlineObject = QTextFormat::UserObject + 1;

/// What the document's formats carry beside the toolkit's own properties.
enum Property {
    kInlineId = QTextFormat::UserProperty + 1, ///< int: which inline group
    kField,                                    ///< QByteArray: instruction of the field
    kParagraph,                                ///< rtf::ParFormat: lengths in twips, exact
    kAutomaticColour, ///< bool: the text's colour was chosen for its background, not by a user
    kRows, ///< QList<rtf::Row> of a table: each row as it was read, for the screen has one look
    kContinues, ///< bool: the table or list goes on the one right before it, which was cut in two
    kPiece      ///< qint64: the block is a piece of a paragraph that is too long to be one
};

/// The number of the first piece of a paragraph that is shown as several blocks; each further piece
/// has the next number.
[[nodiscard]] qint64 nextParagraphOfPieces();
/// True when a block goes on the paragraph of the block right before it.
[[nodiscard]] bool goesOnBefore(const QTextBlock& block);
/// The first of the blocks that show the paragraph of a block.
[[nodiscard]] QTextBlock firstPiece(QTextBlock block);
/// The format of a further piece of a paragraph whose first has that format.
[[nodiscard]] QTextBlockFormat furtherPiece(QTextBlockFormat format);

/// Screen lengths of a length in twips.
[[nodiscard]] double pixels(int twips, double dotsPerInch);

/// The character format without font: `fontName` is the name of the format's font.
[[nodiscard]] QTextCharFormat toScreen(const rtf::CharFormat& format, const QString& fontName);
/// The reverse; `font` is left alone, for it is an index.
[[nodiscard]] rtf::CharFormat fromScreen(const QTextCharFormat& format);
/// The font name as asked for; empty when the format names none.
[[nodiscard]] QString fontName(const QTextCharFormat& format);

[[nodiscard]] QTextBlockFormat toScreen(const rtf::ParFormat& format, double dotsPerInch);
/// The paragraph format that the block carries; what the toolkit can change is taken from it.
/// `list` is the list that the block is in, or nothing.
[[nodiscard]] rtf::ParFormat fromScreen(const QTextBlockFormat& format, const QTextList* list);
[[nodiscard]] QTextListFormat listFormat(const rtf::ParFormat& format);

/// A format made of the choice of a font dialog.
[[nodiscard]] QTextCharFormat toScreen(const FontChoice& font);

/// Colours as the system's callers count them, &H00BBGGRR, from 0x00RRGGBB and back.
[[nodiscard]] constexpr int swapRedBlue(int colour) {
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

} // namespace yrw::richtext
