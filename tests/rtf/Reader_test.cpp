#include "platform/rtf/Writer.h"
#include "tests/rtf/Helpers.h"

#include <gtest/gtest.h>

namespace yrw::rtf {
namespace {

/// A document around a body, with the fonts that the cases use.
QByteArray around(const QByteArray& body) {
    return "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}"
           "{\\f1\\fnil\\fcharset238 Arial CE;}{\\f2\\fnil\\fcharset128 MS Gothic;}"
           "{\\f3\\fnil\\fcharset2 Symbol;}{\\f4\\fnil\\fcharset204 Arial Cyr;}"
           "{\\f5\\fnil\\fcharset161 A;}{\\f6\\fnil\\fcharset129 B;}{\\f7\\fnil\\fcharset134 C;}"
           "{\\f8\\fnil\\fcharset136 D;}{\\f9\\fnil\\fcharset77 E;}{\\f10\\fnil\\cpg1253 F;}}"
           "{\\colortbl ;\\red255\\green0\\blue0;}\\uc1\\pard " +
           body + "}";
}

struct TextCase {
    const char* name;
    const char* body;
    const char16_t* text; ///< paragraphs end in '|'
};

constexpr TextCase kTextCases[] = {
    {"paragraphs", "one\\par\r\ntwo\\par\r\n", u"one|two"},
    {"no last par", "one\\par two", u"one|two"},
    {"empty last paragraph", "one\\par\\par", u"one|"},
    {"blank before the brace", "one\\b0  ", u"one "},
    {"line ends are no text", "o\r\nn\ne", u"one"},
    {"escapes", "\\{a\\\\b\\}\\~c\\-d\\_e", u"{a\\b}\u00A0c\u00ADd\u2011e"},
    {"named characters", "\\lquote a\\rquote \\emdash\\bullet\\tab x",
     u"\u2018a\u2019\u2014\u2022\tx"},
    {"windows 1252", "\\'80\\'e9", u"\u20AC\u00E9"},
    {"raw bytes", "\xe9", u"\u00E9"},
    {"large hex digits", "\\'C9\\'eA", u"\u00C9\u00EA"},
    {"a byte that means nothing", "\\f1 a\\'81b", u"a\uFFFDb"},
    {"unicode beyond the first plane", "\\u128512?", u"\U0001F600"},
    {"central european", "\\f1 \\'b3\\'f3d\\'9f", u"\u0142\u00F3d\u017A"},
    {"cyrillic", "\\f4 \\'cf\\'f0", u"\u041F\u0440"},
    {"greek by charset and by cpg", "\\f5\\'e1\\f10\\'e1", u"\u03B1\u03B1"},
    {"mac", "\\f9\\'8e", u"\u00E9"},
    {"japanese", "\\f2 \\'93\\'fa\\'96{\\b \\'7b}", u"\u65E5\uFFFD{"},
    {"japanese, literal trail byte", "\\f2 \\'93\\'fa\\'96{}", u"\u65E5\uFFFD"},
    {"japanese, trail is a letter", "\\f2\\'83e\\'83\\'58\\'83g", u"\u30C6\u30B9\u30C8"},
    {"japanese, trail is a backslash", "\\f2\\'95\\\\\\'8e\\'a6", u"\u8868\u793A"},
    {"korean", "\\f6\\'b0\\'a1", u"\uAC00"},
    {"simplified chinese", "\\f7\\'d6\\'d0", u"\u4E2D"},
    {"traditional chinese", "\\f8\\'a4\\'a4", u"\u4E2D"},
    {"symbol font", "\\f3\\'b7\\f0 x", u"\uF0B7x"},
    {"font ends with its group", "{\\f1\\'b3}\\'b3", u"\u0142\u00B3"},
    {"unicode", "\\u8364?\\u-3913?\\u228 a", u"\u20AC\uF0B7\u00E4"},
    {"surrogate pair", "\\u-10179?\\u-8704?", u"\U0001F600"},
    {"lone surrogate", "\\u-10179?x", u"\uFFFDx"},
    {"uc counts items", "\\uc3\\u8364\\'80\\b0 ?x\\uc0\\u8364y", u"\u20ACx\u20ACy"},
    {"uc ends with its group", "{\\uc2\\u8364??}\\u8364?x", u"\u20AC\u20ACx"},
    {"a brace ends the skip", "{\\uc9\\u8364?}x", u"\u20ACx"},
    {"binary run is one item", "\\u8364\\bin3 {}}x", u"\u20ACx"},
    {"mark characters are replaced", "\\u-4?\\u8233?", u"\uFFFD\uFFFD"},
    {"unknown word", "\\nosuchword17 x", u"x"},
    {"unknown group", "a{\\*\\nosuch {x\\}}\\bin2 }}y}b", u"ab"},
    {"list text is no text", "{\\pntext\\f3\\'B7\\tab}{\\listtext 1.\\tab}x", u"x"},
    {"document parts are no text", "{\\info{\\title t}}{\\stylesheet{\\s1 h;}}{\\header h}x", u"x"},
    {"first of two pictures",
     "{\\*\\shppict{\\pict\\pngblip 00}}{\\nonshppict{\\pict\\wmetafile8 00}}x", u" x"},
    {"hyperlink", "{\\field{\\*\\fldinst{HYPERLINK \"http://a/\"}}{\\fldrslt{\\ul go}}}x", u"gox"},
    {"object", "a{\\object\\objemb{\\*\\objclass X}{\\*\\objdata 00}{\\result{\\b text}}}b",
     u"atextb"},
    {"object whose data are cut off",
     "a{\\object{\\*\\objdata 0105}{\\result one\\par\\'e9{\\pict\\pngblip 00}}}", u"aone|\u00E9"},
    {"object of two lines, beside a blank",
     "a{\\object{\\*\\objdata 01050000}{\\result {\\b two}\\par lines}} b", u"atwo|lines b"},
    {"objects beside blanks and words",
     "a {\\object{\\*\\objdata 00}} b{\\pict\\pngblip 00} c{\\pict\\pngblip 00}{\\object}d\\par "
     "{\\object}e\\par{\\*\\xe}{\\object}",
     u"a  b c d| e| "},
    {"table", "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\par c\\cell\\row\\pard x",
     u"a\tb|c|x"},
    {"nested table",
     "\\trowd\\cellx9\\intbl a{\\itap2 b\\nestcell{\\*\\nesttableprops\\nestrow}"
     "{\\nonesttables\\par}}\\cell\\row\\pard x",
     u"ab||x"},
    {"cells of nested rows",
     "\\trowd\\cellx9\\cellx99\\intbl a\\par{\\itap2 b\\nestcell "
     "c\\nestcell{\\*\\nesttableprops\\nestrow}"
     "d\\nestcell{\\*\\nesttableprops\\nestrow}}e\\cell f\\cell\\row\\pard x",
     u"a|b\tc|d|e\tf|x"},
    {"footnote", "a{\\footnote f}b", u"ab"},
    {"line break by backslash", "a\\\nb", u"a|b"},
};

TEST(Reader, TextIsWhatAReaderSees) {
    for (const TextCase& c : kTextCases) {
        const Document document = readBytes(around(c.body));
        QString text = document.plainText();
        text.replace(QLatin1String("\r\n"), QLatin1String("|"));
        EXPECT_EQ(text, QString::fromUtf16(c.text)) << c.name;
        EXPECT_FALSE(document.incomplete) << c.name;
    }
}

CharFormat formatAt(const Document& document, int position) {
    for (const Run& run : document.runs) {
        if (position >= run.start && position < run.start + run.length) {
            return document.charFormats[static_cast<std::size_t>(run.format)];
        }
    }
    return {};
}

TEST(Reader, ACodePageThatCannotWriteRichTextIsNotBelieved) {
    for (const int page : {37, 500, 1148, 1200, 99999, 0, -1}) {
        const QByteArray rtf =
            "{\\rtf1\\ansi\\ansicpg" + QByteArray::number(page) + " %caf\\'e9\\par}";
        const Document document = readBytes(rtf);
        EXPECT_EQ(document.plainText(), QString::fromUtf8("%café")) << page;
        EXPECT_EQ(readBytes(write(document)).plainText(), document.plainText()) << page;
    }
}

TEST(Reader, FormatsFollowTheirGroup) {
    const Document document =
        readBytes(around("a{\\b\\i\\fs30\\cf1\\strike b}\\ul c\\ulnone\\super d\\plain "
                         "e\\sub f\\cf7 g\\fs-5 h\\b10 i\\b0\\sub0 j"));
    EXPECT_EQ(document.plainText(), "abcdefghij");
    const CharFormat b = formatAt(document, 1);
    EXPECT_TRUE(b.bold && b.italic && b.strike);
    EXPECT_EQ(b.halfPoints, 30);
    EXPECT_EQ(b.colour, 0xFF0000);
    EXPECT_TRUE(formatAt(document, 2).underline);
    EXPECT_FALSE(formatAt(document, 2).bold);
    EXPECT_EQ(formatAt(document, 3).script, Script::Super);
    EXPECT_EQ(formatAt(document, 4), CharFormat{});
    EXPECT_EQ(formatAt(document, 6).colour, kAutomatic);
    EXPECT_EQ(formatAt(document, 7).halfPoints, 24);
    EXPECT_TRUE(formatAt(document, 8).bold);
    EXPECT_FALSE(formatAt(document, 9).bold);
    EXPECT_EQ(formatAt(document, 8).script, Script::Sub);
    EXPECT_EQ(formatAt(document, 9).script, Script::Normal);
}

const ParFormat& parFormat(const Document& document, std::size_t paragraph) {
    return document.parFormats[static_cast<std::size_t>(document.paragraphs[paragraph].format)];
}

TEST(Reader, ListsOfBothKindsAreLists) {
    const Document document = readBytes(
        "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc4\\levelstartat3{\\leveltext"
        "\\'02\\'00);}{\\levelnumbers\\'01;}}{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-3913 ?;}}"
        "\\listid77}}{\\*\\listoverridetable{\\listoverride\\listid77\\ls2}}"
        "\\pard\\ls2 a\\par\\ilvl1 b\\par\\pard{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart4{\\pntxta.}}"
        "c\\par d\\par\\pard e}");
    ASSERT_EQ(document.paragraphs.size(), 5U);
    EXPECT_EQ(parFormat(document, 0).list, ListKind::LowerLetter);
    EXPECT_EQ(parFormat(document, 0).listStart, 3);
    EXPECT_EQ(parFormat(document, 0).listAfter, ")");
    EXPECT_EQ(parFormat(document, 1).list, ListKind::Bullet);
    EXPECT_EQ(parFormat(document, 2).list, ListKind::UpperRoman);
    EXPECT_EQ(parFormat(document, 3).listStart, 4);
    EXPECT_EQ(parFormat(document, 4).list, ListKind::None);
}

TEST(Reader, CellsWithoutAnEdgeAreAnInchWide) {
    const Document document = readBytes("{\\rtf1\\trowd\\cellx900\\intbl a\\cell b\\cell\\row}");
    ASSERT_EQ(document.rows.size(), 1U);
    EXPECT_EQ(document.rows[0].edges, (QList<int>{900, 2340}));
}

TEST(Reader, KeepsGroupsByteForByteWhereTheyStood) {
    const QByteArray before = "{\\*\\themedata 00{\\x}\\}}";
    const QByteArray inside = "{\\*\\nosuch {\\'7d a}}";
    const Document document = readBytes("{\\rtf1{\\*\\generator G;}" + before + "\\pard a" +
                                        inside + "b{\\pict\\wmetafile8\\bin4 {}}\\}}");
    ASSERT_EQ(document.kept.size(), 1U);
    EXPECT_EQ(document.kept[0], before);
    ASSERT_EQ(document.inlines.size(), 2U);
    EXPECT_EQ(document.inlines[0].raw, inside);
    EXPECT_EQ(document.inlines[1].kind, InlineKind::Picture);
    EXPECT_EQ(document.inlines[1].raw, "{\\pict\\wmetafile8 7b7d7d5c}");
    EXPECT_EQ(document.text, QString::fromUtf16(u"a\uFFFCb\uFFFC"));
}

TEST(Reader, HyperlinksKnowTheirTarget) {
    struct Case {
        const char* instruction;
        const char* link;
    };
    const Case cases[] = {
        {"HYPERLINK \"http://a.example/x?y=1\"", "http://a.example/x?y=1"},
        {"HYPERLINK http://a.example/", "http://a.example/"},
        {" hyperlink  \\\\l \"mark\"", "#mark"},
        {"{\\ul HYPERLINK \"C:\\\\\\\\docs\\\\\\\\a.txt\"}", "C:\\docs\\a.txt"},
        {"HYPERLINK \"http://a/\\u228?\"", "http://a/\u00E4"},
        {"PAGE", ""},
    };
    for (const Case& c : cases) {
        const QByteArray field =
            QByteArray("{\\field{\\*\\fldinst ") + c.instruction + "}{\\fldrslt x}}";
        const Document document = readBytes(around(field));
        ASSERT_EQ(document.fields.size(), 1U);
        EXPECT_EQ(document.fields[0].link, QString::fromUtf8(c.link)) << c.instruction;
    }
}

TEST(Reader, TellsWhatItCouldNotReadWhole) {
    EXPECT_TRUE(readBytes("{\\rtf1 a{\\b b").incomplete);
    EXPECT_EQ(readBytes("{\\rtf1 a{\\b b").plainText(), "ab");
    EXPECT_TRUE(readBytes("{\\rtf1 a{\\*\\nosuch b").incomplete);
    EXPECT_TRUE(readBytes("{\\rtf1 a\\bin900 b}").incomplete);
    EXPECT_FALSE(readBytes("{\\rtf1 a}} trailing {\\rtf1 rubbish\0").incomplete);
    EXPECT_FALSE(readBytes("plain").incomplete);
    EXPECT_EQ(readText(QStringLiteral(u"{\\rtf1 \u0142}")).plainText(), u"\u0142");
}

} // namespace
} // namespace yrw::rtf
