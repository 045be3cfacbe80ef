#include "platform/richtext/SelectionFormat.h"

#include "platform/richtext/Formats.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextFragment>
#include <QTextList>

#include <algorithm>
#include <functional>
#include <type_traits>

namespace yrw::richtext {

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
    QTextBlock block = firstPiece(selection.document()->findBlock(selection.selectionStart()));
    // A selection that ends where a paragraph begins does not hold that paragraph.
    const int end = std::max(selection.selectionEnd() - 1, selection.selectionStart());
    for (; block.isValid() && (block.position() <= end || goesOnBefore(block));
         block = block.next()) {
        blocks.append(block);
    }
    return blocks;
}

rtf::ParFormat paragraphOf(const QTextBlock& block) {
    const QTextBlock first = firstPiece(block);
    return fromScreen(first.blockFormat(), first.textList());
}

/// What `get` gives for all characters of the selection; nothing where it differs.
template <typename Get>
auto ofCharacters(const QTextEdit& editor, Get get) {
    using T = std::invoke_result_t<Get, const QTextCharFormat&>;
    const QTextCursor cursor = editor.textCursor();
    std::optional<T> common;
    bool mixed = false;
    if (cursor.hasSelection()) {
        forEachFormat(cursor, [&](const QTextCharFormat& format) {
            const T value = std::invoke(get, format);
            mixed = common && !(*common == value);
            common = value;
            return !mixed;
        });
    }
    if (mixed) {
        return std::optional<T>();
    }
    return common ? common : std::optional<T>(std::invoke(get, cursor.charFormat()));
}

/// The same for its paragraphs.
template <typename Get>
auto ofParagraphs(const QTextEdit& editor, Get get) {
    using T = std::invoke_result_t<Get, const rtf::ParFormat&>;
    std::optional<T> common;
    for (const QTextBlock& block : blocksOf(editor.textCursor())) {
        const T value = get(paragraphOf(block));
        if (common && !(*common == value)) {
            return std::optional<T>();
        }
        common = value;
    }
    return common;
}

/// A format with one property set.
template <typename Set, typename Value>
QTextCharFormat with(Set set, const Value& value) {
    QTextCharFormat format;
    std::invoke(set, format, value);
    return format;
}

void changeParagraph(const QTextBlock& block, const std::function<void(rtf::ParFormat&)>& change,
                     double dotsPerInch) {
    rtf::ParFormat format = paragraphOf(block);
    const QVariant piece = block.blockFormat().property(kPiece);
    const auto keepPiece = [&piece](QTextBlockFormat look) {
        if (piece.isValid()) {
            look.setProperty(kPiece, piece);
        }
        return look;
    };
    if (goesOnBefore(block)) { // the first piece was changed before
        QTextCursor(block).setBlockFormat(keepPiece(furtherPiece(toScreen(format, dotsPerInch))));
        return;
    }
    change(format);
    QTextList* const list = block.textList();
    const bool listed = format.list != rtf::ListKind::None;
    QTextCursor cursor(block);
    if (list != nullptr && !listed) {
        list->remove(block);
    }
    QTextBlockFormat screen = keepPiece(toScreen(format, dotsPerInch));
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
            cursor.createList(listFormat(format));
        }
    }
}

} // namespace

void SelectionFormat::changeCharacters(const QTextCharFormat& change) {
    QTextCursor cursor = m_editor.textCursor();
    cursor.beginEditBlock();
    cursor.mergeCharFormat(change);
    // The marks of empty paragraphs count as selected: what is typed there follows.
    if (cursor.hasSelection() && m_editor.document()->characterCount() > 1) {
        for (const QTextBlock& block : blocksOf(cursor)) {
            if (block.length() == 1) {
                QTextCursor(block).mergeBlockCharFormat(change);
            }
        }
    }
    cursor.endEditBlock();
    m_editor.setTextCursor(cursor);
    m_changed();
}

void SelectionFormat::changeParagraphs(const std::function<void(rtf::ParFormat&)>& change) {
    QTextCursor cursor = m_editor.textCursor();
    cursor.beginEditBlock();
    for (const QTextBlock& block : blocksOf(cursor)) {
        changeParagraph(block, change, m_editor.logicalDpiX());
    }
    cursor.endEditBlock();
    m_changed();
}

std::optional<bool> SelectionFormat::bold() const {
    return ofCharacters(m_editor, [](const QTextCharFormat& format) {
        return format.fontWeight() >= QFont::DemiBold;
    });
}

void SelectionFormat::setBold(bool on) {
    changeCharacters(with(&QTextCharFormat::setFontWeight, on ? QFont::Bold : QFont::Normal));
}

std::optional<bool> SelectionFormat::italic() const {
    return ofCharacters(m_editor, &QTextCharFormat::fontItalic);
}

void SelectionFormat::setItalic(bool on) {
    changeCharacters(with(&QTextCharFormat::setFontItalic, on));
}

std::optional<bool> SelectionFormat::underline() const {
    return ofCharacters(m_editor, &QTextCharFormat::fontUnderline);
}

void SelectionFormat::setUnderline(bool on) {
    changeCharacters(with(&QTextCharFormat::setFontUnderline, on));
}

std::optional<bool> SelectionFormat::strikeThru() const {
    return ofCharacters(m_editor, &QTextCharFormat::fontStrikeOut);
}

void SelectionFormat::setStrikeThru(bool on) {
    changeCharacters(with(&QTextCharFormat::setFontStrikeOut, on));
}

std::optional<QString> SelectionFormat::fontName() const {
    return ofCharacters(m_editor, &richtext::fontName);
}

void SelectionFormat::setFontName(const QString& name) {
    changeCharacters(with(&QTextCharFormat::setFontFamilies, QStringList(name)));
}

std::optional<double> SelectionFormat::fontSize() const {
    return ofCharacters(m_editor, [](const QTextCharFormat& format) {
        return fromScreen(format).halfPoints / 2.0;
    });
}

void SelectionFormat::setFontSize(double points) {
    changeCharacters(with(&QTextCharFormat::setFontPointSize, std::clamp(points, 0.5, 1638.0)));
}

std::optional<int> SelectionFormat::colour() const {
    return ofCharacters(m_editor, [](const QTextCharFormat& format) {
        const int colour = fromScreen(format).colour;
        return colour == rtf::kAutomatic ? 0 : swapRedBlue(colour);
    });
}

void SelectionFormat::setColour(int colour) {
    // Black is the automatic colour, so that it can be read on a dark ground too.
    changeCharacters(with(
        &QTextCharFormat::setForeground,
        colour == 0 ? QBrush(Qt::NoBrush)
                    : QBrush(QColor::fromRgb(static_cast<QRgb>(swapRedBlue(colour & 0xFFFFFF))))));
}

std::optional<TextAlignment> SelectionFormat::alignment() const {
    const auto alignment =
        ofParagraphs(m_editor, [](const rtf::ParFormat& format) { return format.alignment; });
    if (!alignment || *alignment == rtf::Alignment::Justify) {
        return std::nullopt;
    }
    return static_cast<TextAlignment>(*alignment);
}

void SelectionFormat::setAlignment(TextAlignment alignment) {
    changeParagraphs([alignment](rtf::ParFormat& format) {
        format.alignment = static_cast<rtf::Alignment>(alignment);
    });
}

std::optional<bool> SelectionFormat::bullet() const {
    return ofParagraphs(m_editor, [](const rtf::ParFormat& format) {
        return format.list == rtf::ListKind::Bullet;
    });
}

void SelectionFormat::setBullet(bool on) {
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

std::optional<int> SelectionFormat::indent() const {
    return ofParagraphs(m_editor, [](const rtf::ParFormat& format) {
        return std::max(0, format.left + format.first);
    });
}

void SelectionFormat::setIndent(int twips) {
    constexpr int kMost = 31680;
    const int start = std::clamp(twips, 0, kMost);
    changeParagraphs([start](rtf::ParFormat& format) { format.left = start - format.first; });
}

} // namespace yrw::richtext
