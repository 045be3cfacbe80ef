#include "platform/dao/Folding.h"

#include <algorithm>

namespace yrw::dao {

namespace {

bool isMark(const QChar c) {
    return c.category() == QChar::Mark_NonSpacing || c.category() == QChar::Mark_Enclosing;
}

/// The letter below a stroke, which is no mark of its own in Unicode.
QChar withoutStroke(const QChar c) {
    switch (c.unicode()) {
    case u'ø':
        return u'o';
    case u'ł':
        return u'l';
    case u'đ':
        return u'd';
    case u'ħ':
        return u'h';
    default:
        return c;
    }
}

/// Folds one code point; ASCII takes the short way, since most text is.
void foldOne(QStringView point, QString& out) {
    const char16_t first = point.front().unicode();
    if (point.size() == 1 && first < 0x80) {
        out += QChar(first >= u'A' && first <= u'Z' ? char16_t(first + 32) : first);
        return;
    }
    // By way of the upper case, which alone turns one letter into two ("ß" into "SS").
    const QString parts =
        point.toString().normalized(QString::NormalizationForm_KD).toUpper().toCaseFolded();
    for (const QChar c : parts) {
        if (!isMark(c)) {
            out += withoutStroke(c);
        }
    }
}

template <class EachPoint>
void forEachPoint(QStringView text, EachPoint eachPoint) {
    for (qsizetype i = 0; i < text.size();) {
        const bool pair = text[i].isHighSurrogate() && i + 1 < text.size();
        const qsizetype length = pair ? 2 : 1;
        eachPoint(text.mid(i, length), static_cast<int>(i));
        i += length;
    }
}

} // namespace

QString foldText(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    forEachPoint(text, [&](QStringView point, int) { foldOne(point, folded); });
    return folded;
}

QStringList foldedWords(const QString& typed) {
    return foldText(typed).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool containsWords(QByteArrayView foldedText, const QList<QByteArray>& words) {
    return std::all_of(words.begin(), words.end(),
                       [&](const QByteArray& word) { return foldedText.contains(word); });
}

QList<TextRange> findWords(QStringView text, const QStringList& words, int limit) {
    QList<TextRange> ranges;
    QString folded;
    QList<int> positions; // of each folded letter in the original, and of the end
    forEachPoint(text, [&](QStringView point, int position) {
        foldOne(point, folded);
        positions.resize(folded.size(), position);
    });
    positions.append(static_cast<int>(text.size()));
    for (const QString& word : words) {
        qsizetype at = folded.indexOf(word);
        while (at >= 0 && ranges.size() < limit) {
            const int start = positions[at];
            const int end = positions[at + word.size()];
            ranges.append({start, std::max(1, end - start)});
            at = folded.indexOf(word, at + word.size());
        }
    }
    return ranges;
}

} // namespace yrw::dao
