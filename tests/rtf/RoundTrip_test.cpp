#include "platform/rtf/Writer.h"
#include "tests/rtf/Helpers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace yrw::rtf {
namespace {

const QByteArray kHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Comic Sans MS;}"
    "{\\f1\\fnil\\fcharset2 Symbol;}{\\f4\\froman\\fcharset238 Times\\'b3;}}"
    "{\\colortbl ;\\red255\\green0\\blue0;\\red1\\green2\\blue3;}\\viewkind4\\uc1\\pard\\f0\\fs20 ";

const char* const kBodies[] = {
    "",
    "plain\\par",
    "a\\b b\\i c\\b0 d\\i0\\ul e\\ulnone\\strike f\\strike0\\super g\\nosupersub\\sub h\\par",
    "\\cf1 red\\cf2\\highlight1 x\\cf0\\highlight0 y\\fs31 z\\f4 \\'b3\\u-10179?\\u-8704?\\f1\\'b7",
    "\\b 1\\b0 2\\fs20 24\\par -5\\par",
    "\\qc c\\par\\pard\\qr r\\par\\pard\\qj "
    "j\\par\\pard\\li720\\fi-360\\ri100\\sb60\\sa70\\tx500\\tx900\\sl360\\slmult1 x\\par",
    "a\\line b\\tab c\\~d\\-e\\_f\\{\\}\\\\ \\'a0\\'85\\par",
    "\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-"
    "360\\li720 "
    "a\\par{\\pntext\\f1\\'B7\\tab}b\\par\\pard c\\par",
    "\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart5{\\pntxtb (}{\\pntxta )}}\\fi-360\\li360 a\\par "
    "b\\par"
    "\\pard{\\*\\pn\\pnlvlbody\\pnlcltr{\\pntxta .}}a\\par\\pard{\\*\\pn\\pnlvlbody\\pnucltr}a\\par"
    "\\pard{\\*\\pn\\pnlvlbody\\pnlcrm}a\\par\\pard{\\*\\pn\\pnlvlbody\\pnucrm}a\\par\\pard b",
    "t\\par\\trowd\\trgaph70\\trleft50\\clbrdrt\\brdrs\\cellx1000\\cellx3000\\pard\\intbl "
    "a\\cell\\qr b\\par"
    "\\b c\\b0\\cell\\row\\intbl d\\cell\\cell\\row\\pard after\\par",
    "\\trowd\\cellx1000\\pard\\intbl last is a table\\cell\\row",
    "\\trowd\\cellx1000\\cellx2000\\intbl one of two\\cell\\row\\pard x",
    "\\trowd\\cellx4000\\cellx9000\\pard\\intbl a\\par\\pard\\intbl\\itap2 "
    "b\\nestcell{\\nonesttables\\par}"
    "c\\par d\\nestcell{\\nonesttables\\par}{\\*\\nesttableprops\\trowd\\trgaph50\\clbrdrt\\brdrs"
    "\\cellx1000\\cellx2500\\nestrow}{\\nonesttables\\par}e\\nestcell{\\*"
    "\\nesttableprops\\trowd\\cellx900"
    "\\nestrow}\\pard\\intbl\\itap1\\cell\\pard\\intbl "
    "f\\cell\\trowd\\cellx4000\\cellx9000\\row\\pard after",
    "\\trowd\\cellx9000\\pard\\intbl\\itap4 "
    "deep\\nestcell{\\*\\nesttableprops\\trowd\\cellx99\\nestrow}"
    "\\pard\\intbl\\itap3 "
    "x\\nestcell{\\*\\nesttableprops\\trowd\\cellx199\\nestrow}\\pard\\intbl\\itap2 y"
    "\\nestcell two\\nestcell{\\*\\nesttableprops\\trowd\\cellx299\\nestrow}\\pard\\intbl "
    "z\\cell\\row\\pard",
    "\\trowd\\cellx9000\\intbl{\\itap3 "
    "torn\\nestcell}{\\*\\nesttableprops\\nestrow}x\\row\\pard\\itap2 open\\par"
    "\\pard stray\\nestrow\\par",
    "{\\field{\\*\\fldinst{HYPERLINK \"http://a.example/\"}}{\\fldrslt{\\ul\\cf1 link\\b bold}}} "
    "after\\par",
    "a{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}{\\field{\\*\\fldinst EMPTY}{\\fldrslt}}b",
    "a{\\pict\\pngblip\\picwgoal100\\pichgoal50 89504e47}b{\\pict\\wmetafile8\\bin3 {}{}c",
    "a{\\object\\objemb\\objw100\\objh100{\\*\\objclass Package}{\\*\\objdata "
    "0105}{\\result{\\pict\\wmetafile8 00}}}b",
    "{\\*\\themedata 1234}{\\info{\\author A}}{\\stylesheet{\\s3 h;}}\\s3 x{\\*\\bkmkstart "
    "m}y\\page z{\\v hidden}\\par",
    "x{\\footnote \xe9\\bin2 \xff\\}y",
    "{\\header h}\\rtlpar\\f4 \\'b3\\par\\par\\par",
};

TEST(RoundTrip, ReadWriteReadGivesAnEqualModel) {
    for (const char* body : kBodies) {
        const Document first = readBytes(kHead + body + "}");
        EXPECT_FALSE(first.incomplete) << body;
        const QByteArray written = write(first);
        const Document second = readBytes(written);
        EXPECT_TRUE(first == second) << body << "\n" << written.toStdString();
        EXPECT_EQ(first.plainText(), second.plainText()) << body;
        EXPECT_EQ(write(second), written) << body;
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
