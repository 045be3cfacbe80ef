#include "platform/rtf/Writer.h"
#include "tests/rtf/Helpers.h"

#include <gtest/gtest.h>

#include <ctime>
#include <iterator>
#include <random>

namespace yrw::rtf {
namespace {

const QByteArray kSample =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}{\\f1\\fcharset128 "
    "G;}}{\\colortbl ;\\red255\\green0\\blue0;}{\\*\\unknown 12{34}}{\\info{\\author a}}\r\n\\pard "
    "{\\pntext\\f0\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\li720 "
    "a\\u8364?\\f1\\'93\\'fa\\f0\\par\\trowd"
    "\\cellx100\\cellx200\\pard\\intbl a\\cell b\\cell\\row\\pard{\\field{\\*\\fldinst HYPERLINK "
    "\"x\"}{\\fldrslt y}}{\\pict\\pngblip\\bin4 {}\\a}{\\object{\\*\\objdata 0105}{\\result "
    "r}}\\'e9\\b text\\b0\\par\r\n}";

/// Reads, writes and reads again; what was written must be whole and stay the same.
void check(QByteArrayView input) {
    const Document first = read(input);
    ASSERT_FALSE(first.paragraphs.empty());
    const QByteArray written = write(first);
    const Document second = readBytes(written);
    ASSERT_FALSE(second.incomplete) << written.toStdString();
    ASSERT_EQ(second.plainText().toStdString(), first.plainText().toStdString())
        << input.toByteArray().toStdString() << "\n"
        << written.toStdString();
}

TEST(Hostile, TruncatedAtEveryByte) {
    for (qsizetype i = 0; i <= kSample.size(); ++i) {
        check(QByteArrayView(kSample).first(i));
    }
}

TEST(Hostile, InputsThatFuzzingFound) {
    const QByteArray inputs[] = {
        QByteArray("{\\rtf{\\pict\\\0", 13), // a symbol whose character is not kept
        "{\\rtf{\\pict\\\xe9}x}",
        "{\\rtf{\\object\\\x9e"
        "e",
        "{\\rtf{\\field{\\fldinst}{d{\\fldinst}}}", // two instructions of one field
        "{\\rtf\\u10",                              // a control character as text
        "{\\rtf{\\shppict}\\pict{\\nonshppict",     // two pictures that become one
        "{\\rtf{\\*{p}\\p",                         // a group whose first part was text already
        QByteArray("{\\rtf{\\pict\0p", 13),         // a NUL that ends a control word
        "{\\rtf a{\\field{\\*\\fldinst X}\\par}b}", // a field that shows nothing but an end of line
        // A list table inside the text of a level, and a font number with none above it.
        "{\\rtf{\\*\\listtable\\list\\listlevel{\\leveltext{\\*\\listtable\\list}x\\b}}}",
        "{\\rtf{\\fonttbl{\\f2147483647 A;}}{\\*\\pn\\pnlvlblt}a}",
        "{\\rtf{\\field{\\fldinst}\\bin4 }\\a}}", // binary data where the text of a field would be
    };
    for (const QByteArray& input : inputs) {
        check(input);
    }
}

TEST(Hostile, ChangedAtRandom) {
    std::mt19937 random(20261124); // NOLINT: the same inputs in each run
    const QByteArray pieces[] = {
        "{",        "}",         "\\",           "\\'",      "\\bin9999 ",
        "\\u-1 ",   "\\uc9999 ", "\\cell",       "\\row",    "\\trowd",
        "\\intbl ", "\\*",       "{\\*\\pn",     "\\pard",   "\\par ",
        "\\f1 ",    "\\fldinst", "{\\fonttbl",   "{\\pict ", "\\cellx-99999999999",
        "{\\field", "\\ls1",     "{\\*\\nosuch", "\\plain",  "{\\listtable"};
    for (int round = 0; round < 3000; ++round) {
        QByteArray input = kSample;
        for (unsigned change = random() % 6 + 1; change > 0; --change) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(input.size()));
            switch (random() % 3) {
            case 0:
                input[at] = static_cast<char>(random() % 256);
                break;
            case 1:
                input.insert(at, pieces[random() % std::size(pieces)]);
                break;
            default:
                input.remove(at, static_cast<qsizetype>(random() % 20));
                break;
            }
        }
        check(input);
        if (HasFatalFailure()) {
            return;
        }
    }
}

/// Work that grows faster than the input takes minutes here; the limit is wide enough for
/// instrumented code. Processor time, so that a loaded machine changes nothing.
void readInTime(const QByteArray& input) {
    const std::clock_t start = std::clock();
    const Document document = readBytes(input);
    const QByteArray written = write(document);
    EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);
    EXPECT_LT(written.size(), input.size() * 20 + 10000);
}

TEST(Hostile, StaysBoundedInTimeAndSize) {
    const qsizetype n = 100000;
    const auto repeated = [](const QByteArray& piece, qsizetype times) {
        return QByteArray("{\\rtf1 " + piece.repeated(times));
    };
    const QByteArray deep = repeated("{", n) + "text" + QByteArray(n, '}') + "}";
    EXPECT_EQ(readBytes(deep).plainText(), "text");
    EXPECT_FALSE(readBytes(deep).incomplete);
    readInTime(deep);
    readInTime(repeated("{", n * 20));
    readInTime(repeated("{\\*\\nosuch ", n));
    readInTime(repeated("{\\pict ", n));
    readInTime(repeated("{\\field{\\*\\fldinst x}{\\fldrslt y}", n));
    readInTime(repeated("\\trowd\\intbl a\\cell\\row", n / 2));
    readInTime(repeated("\\cell", n));
    readInTime(repeated("\\intbl a\\par\\pard b\\par", n / 4));
    readInTime(repeated("{\\fonttbl{\\f1 a;}}", n / 4));
    readInTime(repeated("\\bin2147483647 ", n));
    readInTime(repeated("\\u-1?", n));
    QByteArray formats = "{\\rtf1 ";
    QByteArray fonts = "{\\rtf1{\\fonttbl";
    for (int i = 0; i < n / 4; ++i) {
        formats += "\\li" + QByteArray::number(i % 20000) + "\\tx" + QByteArray::number(i) +
                   "\\fs" + QByteArray::number(i % 3000) + " x\\par";
        fonts += "{\\f" + QByteArray::number(i) + " F" + QByteArray::number(i) + ";}";
    }
    readInTime(formats);
    readInTime(fonts);
}

} // namespace
} // namespace yrw::rtf
