// How a search compares texts.
#include "platform/dao/Folding.h"

#include <gtest/gtest.h>

namespace yrw::dao {

TEST(Folding, WordsAreFoundWithoutCaseAndAccents) {
    struct Case {
        const char* text;
        const char* typed;
        bool found;
    };
    const QList<Case> cases{
        {"Müller GmbH", "muller", true},
        {"Muller", "MÜLLER", true},
        {"Straße 5", "strasse", true},
        {"cafe\u0301", "café", true}, // a letter with a mark of its own
        {"Ångström", "angst", true},
        {"Łódź, Tromsø", "lodz tromso", true},
        {"one two", "two one", true},
        {"one two", "one three", false},
        {"übermorgen", "morgen", true},
        {"I \U0001F600 it", "\U0001F600", true},
        {"anything", "   ", true},
        {"\U00010400", "\U00010428", true}, // of two units, in another case
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.text);
        QList<QByteArray> words;
        for (const QString& word : foldedWords(QString::fromUtf8(each.typed))) {
            words.append(word.toUtf8());
        }
        const QByteArray folded = foldText(QString::fromUtf8(each.text)).toUtf8();
        EXPECT_EQ(containsWords(folded, words), each.found);
    }
}

TEST(Folding, HitsAreGivenInTheOriginalText) {
    const QString text = QString::fromUtf8("Die Straße, STRASSE und cafe\u0301s");
    const QList<TextRange> street = findWords(text, foldedWords("strasse"), 10);
    ASSERT_EQ(street.size(), 2);
    EXPECT_EQ(text.mid(street[0].start, street[0].length), QString::fromUtf8("Straße"));
    EXPECT_EQ(text.mid(street[1].start, street[1].length), "STRASSE");
    const QList<TextRange> coffee = findWords(text, foldedWords("cafe"), 10);
    ASSERT_EQ(coffee.size(), 1);
    EXPECT_EQ(text.mid(coffee[0].start, coffee[0].length), QString::fromUtf8("cafe\u0301"));
    EXPECT_EQ(findWords(text, foldedWords("s"), 3).size(), 3);
    EXPECT_EQ(findWords(QString::fromUtf8("\U00010400 x"), foldedWords("\U00010428"), 3).size(), 1);
}

} // namespace yrw::dao
