#include "platform/richtext/TextMarks.h"

#include "platform/richtext/ReadableColours.h"

#include <algorithm>

namespace yrw::richtext {

namespace {

/// True when both mark the same pieces in the same way.
bool isSame(const TextMarks::Marks& a, const TextMarks::Marks& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const QTextEdit::ExtraSelection& one, const QTextEdit::ExtraSelection& other) {
            return one.format == other.format && one.cursor.anchor() == other.cursor.anchor() &&
                   one.cursor.position() == other.cursor.position();
        });
}

} // namespace

void TextMarks::set(const Marks& marks) {
    m_marks = marks;
    show();
}

void TextMarks::makeReadable(const QRect& view) {
    const Marks pieces =
        readableColours(*m_editor.document(), view, m_editor.palette().color(QPalette::Base));
    if (!isSame(pieces, m_readable)) {
        m_readable = pieces;
        show();
    }
}

void TextMarks::clear() {
    m_marks.clear();
    m_readable.clear();
    show();
}

void TextMarks::show() {
    m_editor.setExtraSelections(m_readable + m_marks);
}

} // namespace yrw::richtext
