#include "platform/rtf/Model.h"

#include <QStringView>

#include <algorithm>
#include <cstddef>

namespace yrw::rtf {

namespace {

template <typename T>
const T& at(const std::vector<T>& values, int index) {
    return values[static_cast<std::size_t>(index)];
}

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

bool sameParagraph(const Document& a, const Paragraph& left, const Document& b,
                   const Paragraph& right) {
    if (left.runCount != right.runCount || left.cell != right.cell ||
        (left.row < 0) != (right.row < 0) ||
        !(at(a.parFormats, left.format) == at(b.parFormats, right.format))) {
        return false;
    }
    if (left.row >= 0 && !(at(a.rows, left.row) == at(b.rows, right.row))) {
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

} // namespace

QString Document::plainText() const {
    QString plain;
    plain.reserve(text.size() + static_cast<qsizetype>(paragraphs.size()) * 2);
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        const Paragraph& paragraph = paragraphs[i];
        for (int r = 0; r < paragraph.runCount; ++r) {
            const Run& run = at(runs, paragraph.firstRun + r);
            if (run.object >= 0) {
                plain += at(inlines, run.object).kind == InlineKind::Kept ? QString()
                                                                          : QStringLiteral(" ");
            } else {
                plain += QStringView(text).mid(run.start, run.length);
            }
        }
        if (i + 1 < paragraphs.size()) {
            const Paragraph& next = paragraphs[i + 1];
            const bool sameRow = paragraph.row >= 0 && paragraph.row == next.row;
            plain += sameRow && paragraph.cell != next.cell ? QStringLiteral("\t")
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
        if (!sameParagraph(a, a.paragraphs[i], b, b.paragraphs[i])) {
            return false;
        }
    }
    return true;
}

} // namespace yrw::rtf
