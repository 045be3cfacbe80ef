#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

namespace yrw::dao {

/// A text as a search compares it: without case and accents.
[[nodiscard]] QString foldText(QStringView text);

/// What the user typed into the find field, as folded words.
[[nodiscard]] QStringList foldedWords(const QString& typed);
/// True when a folded text contains every word, inside words too; both in UTF-8.
[[nodiscard]] bool containsWords(QByteArrayView foldedText, const QList<QByteArray>& words);

/// A range of an original text.
struct TextRange {
    int start = 0;
    int length = 0;
};
/// Where the words stand in a text, in any order; at most `limit` ranges.
[[nodiscard]] QList<TextRange> findWords(QStringView text, const QStringList& words, int limit);

} // namespace yrw::dao
