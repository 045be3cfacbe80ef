#include "platform/rtf/Model.h"

#include "platform/rtf/Reader.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace yrw::rtf {

namespace {

bool sameChars(const Document& a, int formatA, const Document& b, int formatB) {
    CharFormat left = at(a.charFormats, formatA);
    const CharFormat& right = at(b.charFormats, formatB);
    if (at(a.fonts, left.font).name != at(b.fonts, right.font).name) {
        return false;
    }
    left.font = right.font;
    return left == right;
}

bool sameRun(const Document& a, const Run& left, const Document& b, const Run& right) {
    if (left.length != right.length || (left.object < 0) != (right.object < 0) ||
        (left.field < 0) != (right.field < 0) || !sameChars(a, left.format, b, right.format)) {
        return false;
    }
    return (left.object < 0 || at(a.inlines, left.object) == at(b.inlines, right.object)) &&
           (left.field < 0 || at(a.fields, left.field) == at(b.fields, right.field));
}

/// Rows are the same when their looks are and those of the rows around them.
bool sameRow(const Document& a, int rowA, const Document& b, int rowB) {
    while (rowA >= 0 && rowB >= 0) {
        Row left = at(a.rows, rowA);
        const Row& right = at(b.rows, rowB);
        rowA = std::exchange(left.parent, right.parent);
        rowB = right.parent;
        if (!(left == right)) {
            return false;
        }
    }
    return rowA < 0 && rowB < 0;
}

bool sameParagraph(const Document& a, const Paragraph& left, const Document& b,
                   const Paragraph& right) {
    if (left.runCount != right.runCount || left.cell != right.cell ||
        !(at(a.parFormats, left.format) == at(b.parFormats, right.format)) ||
        !sameRow(a, left.row, b, right.row)) {
        return false;
    }
    if (left.runCount == 0) {
        return sameChars(a, left.mark, b, right.mark);
    }
    for (int i = 0; i < left.runCount; ++i) {
        if (!sameRun(a, at(a.runs, left.firstRun + i), b, at(b.runs, right.firstRun + i))) {
            return false;
        }
    }
    return true;
}

/// True when the second paragraph begins another cell of the innermost row around both.
bool isNextCell(const Document& document, const Paragraph& one, const Paragraph& next) {
    if (one.row < 0 || next.row < 0) {
        return false;
    }
    const CellPath a = document.cellsOf(one);
    const CellPath b = document.cellsOf(next);
    for (int level = 0; level < std::min(a.depth, b.depth); ++level) {
        if (!(a.at(level) == b.at(level))) {
            return a.at(level).row == b.at(level).row;
        }
    }
    return false;
}

/// Adds what stands in the plain text for the group that run `r` of a paragraph is: the text that
/// it shows, else a blank, unless one stands there already. `begin` is where the paragraph begins.
void addInline(QString& plain, qsizetype begin, const Document& document,
               const Paragraph& paragraph, int r) {
    const Run& run = at(document.runs, paragraph.firstRun + r);
    const Inline& group = at(document.inlines, run.object);
    if (group.kind == InlineKind::Kept) {
        return;
    }
    const QString shown =
        group.kind == InlineKind::Object ? visibleText(group.raw, document.codePage) : QString();
    if (!shown.isEmpty()) {
        plain += shown;
        return;
    }
    const qsizetype next = run.start + run.length;
    const bool last = r + 1 == paragraph.runCount;
    const bool before = plain.size() > begin && plain.back().isSpace();
    const bool after = !last && document.text.at(next).isSpace();
    if (!before && !after) {
        plain += u' ';
    }
}

QString roman(int number) {
    static constexpr std::array kParts = {
        std::pair(1000, "m"), std::pair(900, "cm"), std::pair(500, "d"), std::pair(400, "cd"),
        std::pair(100, "c"),  std::pair(90, "xc"),  std::pair(50, "l"),  std::pair(40, "xl"),
        std::pair(10, "x"),   std::pair(9, "ix"),   std::pair(5, "v"),   std::pair(4, "iv"),
        std::pair(1, "i")};
    QString text;
    for (const auto& [value, letters] : kParts) {
        for (; number >= value; number -= value) {
            text += QLatin1String(letters);
        }
    }
    return text;
}

QString letters(int number) {
    QString text;
    for (; number > 0; number = (number - 1) / 26) {
        text.prepend(QChar(static_cast<char16_t>(u'a' + (number - 1) % 26)));
    }
    return text;
}

} // namespace

bool isSameList(const ParFormat& a, const ParFormat& b) {
    return a.list == b.list && a.listStart == b.listStart && a.listBefore == b.listBefore &&
           a.listAfter == b.listAfter && a.left == b.left;
}

QString listNumber(ListKind kind, int number) {
    switch (kind) {
    case ListKind::Decimal:
        return QString::number(number);
    case ListKind::LowerLetter:
        return letters(number);
    case ListKind::UpperLetter:
        return letters(number).toUpper();
    case ListKind::LowerRoman:
        return number > 0 && number < 4000 ? roman(number) : QString::number(number);
    case ListKind::UpperRoman:
        return number > 0 && number < 4000 ? roman(number).toUpper() : QString::number(number);
    default:
        return {};
    }
}

int Document::depthOf(int row) const {
    int depth = 0;
    for (; row >= 0; row = at(rows, row).parent) {
        ++depth;
    }
    return depth;
}

int Document::lengthOf(const Paragraph& paragraph) const {
    if (paragraph.runCount == 0) {
        return 0;
    }
    // Runs follow each other without a gap.
    const Run& last = at(runs, paragraph.firstRun + paragraph.runCount - 1);
    return last.start + last.length - at(runs, paragraph.firstRun).start;
}

CellPath Document::cellsOf(const Paragraph& paragraph) const {
    CellPath path;
    path.depth = std::min(depthOf(paragraph.row), kMostNested);
    CellPlace place{paragraph.row, paragraph.cell};
    for (int level = path.depth - 1; level >= 0; --level) {
        at(path.places, level) = place;
        const Row& row = at(rows, place.row);
        place = {row.parent, row.parentCell};
    }
    return path;
}

QString Document::plainText() const {
    QString plain;
    plain.reserve(text.size() + static_cast<qsizetype>(paragraphs.size()) * 2);
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        const Paragraph& paragraph = paragraphs[i];
        const qsizetype begin = plain.size();
        for (int r = 0; r < paragraph.runCount; ++r) {
            const Run& run = at(runs, paragraph.firstRun + r);
            if (run.object < 0) {
                plain += QStringView(text).mid(run.start, run.length);
            } else {
                addInline(plain, begin, *this, paragraph, r);
            }
        }
        if (i + 1 < paragraphs.size()) {
            plain += isNextCell(*this, paragraph, paragraphs[i + 1]) ? QStringLiteral("\t")
                                                                     : QStringLiteral("\r\n");
        }
    }
    plain.replace(QChar(kLineBreak), QStringLiteral("\r\n"));
    return plain;
}

bool operator==(const Document& a, const Document& b) {
    if (a.text != b.text || a.kept != b.kept || a.paragraphs.size() != b.paragraphs.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.paragraphs.size(); ++i) {
        // Rows of one look are still two rows.
        const bool sameRows = i == 0 || (a.paragraphs[i].row == a.paragraphs[i - 1].row) ==
                                            (b.paragraphs[i].row == b.paragraphs[i - 1].row);
        if (!sameRows || !sameParagraph(a, a.paragraphs[i], b, b.paragraphs[i])) {
            return false;
        }
    }
    return true;
}

} // namespace yrw::rtf
