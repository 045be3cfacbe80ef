#include "platform/richtext/Formats.h"
#include "platform/richtext/RichTextBox.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextList>

#include <algorithm>
#include <limits>

// The selection properties.

namespace yrw {

namespace {

constexpr int kHanging = 360; ///< twips that a bullet stands before its text

/// Calls `visit` with the format of each piece of text in the selection until it gives false.
template <typename Visit>
void forEachFormat(const QTextCursor& selection, Visit visit) {
    const int end = selection.selectionEnd();
    for (QTextBlock block = selection.document()->findBlock(selection.selectionStart());
         block.isValid() && block.position() < end; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const bool inside =
                fragment.position() < end &&
                fragment.position() + fragment.length() > selection.selectionStart();
            if (inside && !visit(fragment.charFormat())) {
                return;
            }
        }
    }
}

QList<QTextBlock> blocksOf(const QTextCursor& selection) {
    QList<QTextBlock> blocks;
    QTextBlock block =
        richtext::firstPiece(selection.document()->findBlock(selection.selectionStart()));
    // A selection that ends where a paragraph begins does not hold that paragraph.
    const int end = std::max(selection.selectionEnd() - 1, selection.selectionStart());
    for (; block.isValid() && (block.position() <= end || richtext::goesOnBefore(block));
         block = block.next()) {
        blocks.append(block);
    }
    return blocks;
}

} // namespace

template <typename T, typename Get>
std::optional<T> RichTextBox::ofCharacters(Get get) const {
    const QTextCursor cursor = textCursor();
    if (!cursor.hasSelection()) {
        return get(cursor.charFormat());
    }
    std::optional<T> common;
    bool mixed = false;
    forEachFormat(cursor, [&](const QTextCharFormat& format) {
        const T value = get(format);
        mixed = common && !(*common == value);
        common = value;
        return !mixed;
    });
    if (mixed) {
        return std::nullopt;
    }
    return common ? common : get(cursor.charFormat());
}

template <typename T, typename Get>
std::optional<T> RichTextBox::ofParagraphs(Get get) const {
    std::optional<T> common;
    for (const QTextBlock& block : blocksOf(textCursor())) {
        const T value = get(paragraphOf(block));
        if (common && !(*common == value)) {
            return std::nullopt;
        }
        common = value;
    }
    return common;
}

rtf::ParFormat RichTextBox::paragraphOf(const QTextBlock& block) const {
    const QTextBlock first = richtext::firstPiece(block);
    return richtext::fromScreen(first.blockFormat(), first.textList());
}

void RichTextBox::changeCharacters(const QTextCharFormat& change) {
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.mergeCharFormat(change);
    // The marks of empty paragraphs count as selected: what is typed there follows.
    if (cursor.hasSelection() && document()->characterCount() > 1) {
        for (const QTextBlock& block : blocksOf(cursor)) {
            if (block.length() == 1) {
                QTextCursor(block).mergeBlockCharFormat(change);
            }
        }
    }
    cursor.endEditBlock();
    setTextCursor(cursor);
    Q_EMIT selectionStateChanged();
}

void RichTextBox::changeParagraphs(const ParagraphChange& change) {
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    for (const QTextBlock& block : blocksOf(cursor)) {
        changeParagraph(block, change);
    }
    cursor.endEditBlock();
    Q_EMIT selectionStateChanged();
}

void RichTextBox::changeParagraph(const QTextBlock& block, const ParagraphChange& change) {
    rtf::ParFormat format = paragraphOf(block);
    const QVariant piece = block.blockFormat().property(richtext::kPiece);
    const auto keepPiece = [&piece](QTextBlockFormat look) {
        if (piece.isValid()) {
            look.setProperty(richtext::kPiece, piece);
        }
        return look;
    };
    if (richtext::goesOnBefore(block)) { // the first piece was changed before
        QTextCursor(block).setBlockFormat(
            keepPiece(richtext::furtherPiece(richtext::toScreen(format, logicalDpiX()))));
        return;
    }
    change(format);
    QTextList* const list = block.textList();
    const bool listed = format.list != rtf::ListKind::None;
    QTextCursor cursor(block);
    if (list != nullptr && !listed) {
        list->remove(block);
    }
    QTextBlockFormat screen = keepPiece(richtext::toScreen(format, logicalDpiX()));
    if (list != nullptr && listed) {
        screen.setObjectIndex(list->objectIndex());
    }
    cursor.setBlockFormat(screen);
    if (list == nullptr && listed) {
        QTextList* const above = block.previous().textList();
        const bool joins = above != nullptr && paragraphOf(block.previous()).list == format.list;
        if (joins) {
            above->add(block);
        } else {
            cursor.createList(richtext::listFormat(format));
        }
    }
}

std::optional<bool> RichTextBox::SelBold() const {
    return ofCharacters<bool>(
        [](const QTextCharFormat& format) { return format.fontWeight() >= QFont::DemiBold; });
}

void RichTextBox::setSelBold(bool on) {
    QTextCharFormat change;
    change.setFontWeight(on ? QFont::Bold : QFont::Normal);
    changeCharacters(change);
}

std::optional<bool> RichTextBox::SelItalic() const {
    return ofCharacters<bool>([](const QTextCharFormat& format) { return format.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on) {
    QTextCharFormat change;
    change.setFontItalic(on);
    changeCharacters(change);
}

std::optional<bool> RichTextBox::SelUnderline() const {
    return ofCharacters<bool>([](const QTextCharFormat& format) { return format.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on) {
    QTextCharFormat change;
    change.setFontUnderline(on);
    changeCharacters(change);
}

std::optional<bool> RichTextBox::SelStrikeThru() const {
    return ofCharacters<bool>([](const QTextCharFormat& format) { return format.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on) {
    QTextCharFormat change;
    change.setFontStrikeOut(on);
    changeCharacters(change);
}

std::optional<QString> RichTextBox::SelFontName() const {
    return ofCharacters<QString>(
        [](const QTextCharFormat& format) { return richtext::fontName(format); });
}

void RichTextBox::setSelFontName(const QString& name) {
    QTextCharFormat change;
    change.setFontFamilies({name});
    changeCharacters(change);
}

std::optional<double> RichTextBox::SelFontSize() const {
    return ofCharacters<double>([](const QTextCharFormat& format) {
        return richtext::fromScreen(format).halfPoints / 2.0;
    });
}

void RichTextBox::setSelFontSize(double points) {
    QTextCharFormat change;
    change.setFontPointSize(std::clamp(points, 0.5, 1638.0));
    changeCharacters(change);
}

std::optional<int> RichTextBox::SelColor() const {
    return ofCharacters<int>([](const QTextCharFormat& format) {
        const int colour = richtext::fromScreen(format).colour;
        return colour == rtf::kAutomatic ? 0 : richtext::swapRedBlue(colour);
    });
}

void RichTextBox::setSelColor(int colour) {
    QTextCharFormat change;
    // Black is the automatic colour, so that it can be read on a dark ground too.
    change.setForeground(
        colour == 0
            ? QBrush(Qt::NoBrush)
            : QBrush(QColor::fromRgb(static_cast<QRgb>(richtext::swapRedBlue(colour & 0xFFFFFF)))));
    changeCharacters(change);
}

std::optional<TextAlignment> RichTextBox::SelAlignment() const {
    const auto alignment =
        ofParagraphs<rtf::Alignment>([](const rtf::ParFormat& format) { return format.alignment; });
    if (!alignment || *alignment == rtf::Alignment::Justify) {
        return std::nullopt;
    }
    return static_cast<TextAlignment>(*alignment);
}

void RichTextBox::setSelAlignment(TextAlignment alignment) {
    changeParagraphs([alignment](rtf::ParFormat& format) {
        format.alignment = static_cast<rtf::Alignment>(alignment);
    });
}

std::optional<bool> RichTextBox::SelBullet() const {
    return ofParagraphs<bool>(
        [](const rtf::ParFormat& format) { return format.list == rtf::ListKind::Bullet; });
}

void RichTextBox::setSelBullet(bool on) {
    changeParagraphs([on](rtf::ParFormat& format) {
        const bool was = format.list != rtf::ListKind::None;
        if (was && !on) {
            format.left = std::max(0, format.left + format.first);
            format.first = 0;
        } else if (!was && on) {
            format.left = std::max(0, format.left + format.first) + kHanging;
            format.first = -kHanging;
        }
        format.list = on ? rtf::ListKind::Bullet : rtf::ListKind::None;
        format.listBefore.clear();
        format.listAfter.clear();
    });
}

std::optional<int> RichTextBox::SelIndent() const {
    return ofParagraphs<int>(
        [](const rtf::ParFormat& format) { return std::max(0, format.left + format.first); });
}

void RichTextBox::setSelIndent(int twips) {
    constexpr int kMost = 31680;
    const int start = std::clamp(twips, 0, kMost);
    changeParagraphs([start](rtf::ParFormat& format) { format.left = start - format.first; });
}

int RichTextBox::SelStart() const {
    return textCursor().selectionStart();
}

void RichTextBox::setSelStart(int position) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(std::clamp(position, 0, document()->characterCount() - 1));
    setTextCursor(cursor);
}

int RichTextBox::SelLength() const {
    return textCursor().selectionEnd() - textCursor().selectionStart();
}

void RichTextBox::setSelLength(int length) {
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    const int last = document()->characterCount() - 1;
    cursor.setPosition(start);
    cursor.setPosition(start + std::clamp(length, 0, last - start), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

} // namespace yrw
