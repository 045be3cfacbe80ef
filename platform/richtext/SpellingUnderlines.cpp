#include "platform/richtext/SpellingUnderlines.h"

#include "platform/spelling/SpellChecker.h"

#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextDocument>

#include <algorithm>

namespace yrw::richtext {

namespace {

/// Longer paragraphs and documents are data rather than writing; checking them would stall.
constexpr qsizetype kLongestBlock = 20000;
constexpr int kLongestDocument = 500000;

bool isWriting(QStringView word) {
    const bool letters = std::all_of(word.begin(), word.end(), [](QChar c) {
        return c.isLetter() || c.isMark() || c == u'\'' || c == QChar(0x2019);
    });
    // Abbreviations are in no dictionary.
    return letters && word.size() > 1 && word.toString().toUpper() != word;
}

/// True for a word inside an address or the name of a file: what stands between two blanks around
/// it has a mark of those.
bool isInAddress(const QString& text, qsizetype begin, qsizetype end) {
    while (begin > 0 && !text[begin - 1].isSpace()) {
        --begin;
    }
    while (end < text.size() && !text[end].isSpace()) {
        ++end;
    }
    const QStringView token = QStringView(text).sliced(begin, end - begin);
    const qsizetype dot = token.indexOf(u'.');
    const bool innerDot = dot > 0 && dot + 1 < token.size() && token[dot + 1].isLetterOrNumber();
    return innerDot || token.contains(u'@') || token.contains(u'/') || token.contains(u'\\') ||
           token.contains(u'_');
}

/// Calls `found` with begin and length of each word that should be in a dictionary.
template <class Found>
void eachWord(const QString& text, Found found) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    for (qsizetype begin = 0, end = finder.toNextBoundary(); end >= 0;
         begin = end, end = finder.toNextBoundary()) {
        if (isWriting(QStringView(text).sliced(begin, end - begin)) &&
            !isInAddress(text, begin, end)) {
            found(begin, end - begin);
        }
    }
}

} // namespace

SpellingUnderlines::SpellingUnderlines(QTextDocument& document,
                                       std::shared_ptr<SpellChecker> checker)
    : QSyntaxHighlighter(&document), m_checker(std::move(checker)) {}

SpellingUnderlines::~SpellingUnderlines() = default;

void SpellingUnderlines::highlightBlock(const QString& text) {
    if (text.size() > kLongestBlock || document()->characterCount() > kLongestDocument) {
        return;
    }
    QTextCharFormat wrong;
    wrong.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    wrong.setUnderlineColor(Qt::red);
    eachWord(text, [&](qsizetype begin, qsizetype length) {
        if (!m_checker->knows(text.sliced(begin, length))) {
            setFormat(static_cast<int>(begin), static_cast<int>(length), wrong);
        }
    });
}

QTextCursor SpellingUnderlines::unknownWord(const QTextCursor& at) const {
    const QTextBlock block = at.block();
    const qsizetype position = at.positionInBlock();
    QTextCursor word;
    eachWord(block.text(), [&](qsizetype begin, qsizetype length) {
        if (begin <= position && position <= begin + length &&
            !m_checker->knows(block.text().sliced(begin, length))) {
            word = QTextCursor(block);
            word.setPosition(block.position() + static_cast<int>(begin));
            word.setPosition(block.position() + static_cast<int>(begin + length),
                             QTextCursor::KeepAnchor);
        }
    });
    return word;
}

} // namespace yrw::richtext
