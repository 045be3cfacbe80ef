#include "platform/rtf/Writer.h"
#include "tests/rtf/Bodies.h"
#include "tests/rtf/Helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <vector>

namespace yrw::rtf {
namespace {

/// Each body, and many in any order, in the formats that the one before leaves or in none.
std::vector<QByteArray> bodiesAndSequences() {
    std::vector<QByteArray> all(std::begin(kBodies), std::end(kBodies));
    std::mt19937 random(1); // NOLINT: the same every time
    for (int i = 0; i < 300; ++i) {
        QByteArray sequence;
        for (int part = 0; part < 4; ++part) {
            sequence += kBodies[random() % std::size(kBodies)];
            sequence += random() % 2 == 0 ? "\\par\\pard\\plain " : "\\par\\pard ";
        }
        all.push_back(sequence + "\\plain end");
    }
    return all;
}

TEST(RoundTrip, ReadWriteReadGivesAnEqualModel) {
    for (const QByteArray& body : bodiesAndSequences()) {
        const Document first = readBytes(kHead + body + "}");
        EXPECT_FALSE(first.incomplete) << body.toStdString();
        const QByteArray written = write(first);
        const Document second = readBytes(written);
        EXPECT_TRUE(first == second) << body.toStdString() << "\n" << written.toStdString();
        EXPECT_EQ(first.plainText(), second.plainText()) << body.toStdString();
        EXPECT_EQ(write(second), written) << body.toStdString();
        EXPECT_TRUE(std::all_of(written.begin(), written.end(), [](char c) { return c > 0; }));
    }
}

TEST(RoundTrip, LettersInASymbolFontStayLetters) {
    // The default font is missing from the table, or has a symbol font's name.
    for (const char* table : {"{\\f2\\fcharset2 Symbol;}", "{\\f2\\fcharset2 X;}{\\f0 X;}"}) {
        const Document first =
            readBytes(QByteArray("{\\rtf1\\deff0{\\fonttbl") + table + "}{\\f2\\'61}a}");
        EXPECT_EQ(first.plainText(), QString::fromUtf16(u"\uF061a"));
        EXPECT_EQ(readBytes(write(first)).plainText(), first.plainText()) << table;
    }
}

TEST(Writer, EndsInTheTailAndKeepsWordsApartFromWhatTakesItsPlace) {
    for (const char* body : kBodies) {
        QByteArray written = write(readBytes(kHead + body + "}"));
        ASSERT_TRUE(written.endsWith(kTail)) << written.toStdString();
        const QString before = readBytes(written).plainText();
        written.chop(11);
        const QString after = readBytes(written + "24/11/2026 }").plainText();
        EXPECT_EQ(after, before + "24/11/2026 ") << written.toStdString();
    }
}

TEST(Writer, KeepsTablesThatKeptGroupsRelyOn) {
    const Document document = readBytes(kHead + "x{\\footnote\\f4\\cf2 f}}");
    const QByteArray written = write(document);
    EXPECT_TRUE(written.contains("{\\f4\\froman\\fcharset238 "));
    EXPECT_TRUE(written.contains("{\\colortbl ;\\red255\\green0\\blue0;\\red1\\green2\\blue3;}"));
}

TEST(Writer, ListItemsCarryTheirNumberForOldReaders) {
    const QByteArray written = write(
        readBytes(kHead + "\\pard{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart3{\\pntxta.}}a\\par b\\par"
                          "\\pard{\\*\\pn\\pnlvlbody\\pndec{\\pntxta.}}c\\par\\pard d \\u8364?}"));
    EXPECT_TRUE(written.contains("{\\pntext 1.\\tab}"));
    EXPECT_TRUE(written.contains("\\'80")) << "one byte where the code page has one";
    EXPECT_TRUE(written.contains("{\\pntext III.\\tab}"));
    EXPECT_TRUE(written.contains("{\\pntext IV.\\tab}"));
}

TEST(Escape, ShowsEveryTextAsTyped) {
    const QString texts[] = {QStringLiteral("{Anna} \\b Berg\\par"),
                             QString::fromUtf8("Ренé 日本 😀 ż"),
                             QStringLiteral("\ttab, two  blanks "), QStringLiteral("7 \\'41 - ")};
    for (const QString& text : texts) {
        const QString rtf = u"{\\rtf1\\uc1\\b " + escape(text) + u"}";
        EXPECT_EQ(readText(rtf).plainText(), text);
    }
    EXPECT_EQ(readText(u"{\\rtf1 " + escape(u"a\r\nb\nc") + u"}").plainText(), "a\r\nb\r\nc");
}

} // namespace
} // namespace yrw::rtf
