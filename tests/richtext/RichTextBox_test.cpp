#include "platform/richtext/RichTextBox.h"

#include "platform/rtf/Writer.h"
#include "tests/driving/Select.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

namespace yrw {
namespace {

using test::select;

const QString kTail = QString::fromLatin1(rtf::kTail);

/// The stored text of a note with a stamp, as written by an older editor.
const QString kStamped =
    QString::fromLatin1(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Comic Sans "
        "MS;}{\\f1\\fnil\\fcharset2 Symbol;}}\r\n{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
        "\\viewkind4\\uc1\\pard\\cf0\\fs20 \\cf1\\b [24/11/26 14:05 Anna Berg] - \\cf0\\b0 The bay "
        "is "
        "shut.\\par\r\n\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{"
        "\\pntxtb\\'B7}}"
        "\\fi-360\\li720 two keys\\par\r\n{\\pntext\\f1\\'B7\\tab}spare fuses\\par\r\n\\pard Ring "
        "first.\\par\r\n}\r\n") +
    QChar(u'\0');

TEST(RichTextBox, ShowsAStoredNoteAndReportsItsFormats) {
    RichTextBox box;
    box.setTextRTF(kStamped);
    EXPECT_EQ(box.Text(), "[24/11/26 14:05 Anna Berg] - The bay is shut.\r\ntwo keys\r\nspare "
                          "fuses\r\nRing first.");
    EXPECT_FALSE(box.isIncomplete());
    select(box, 1, 5);
    EXPECT_EQ(box.selection().bold(), true);
    EXPECT_EQ(box.selection().colour(), 0x0000FF);
    EXPECT_EQ(box.selection().fontName(), "Comic Sans MS");
    EXPECT_EQ(box.selection().fontSize(), 10.0);
    EXPECT_EQ(box.selection().bullet(), false);
    box.selectAll();
    EXPECT_EQ(box.selection().bold(), std::nullopt);
    EXPECT_EQ(box.selection().bullet(), std::nullopt);
    EXPECT_EQ(box.selection().italic(), false);
    select(box, static_cast<int>(box.Text().indexOf("keys")) - 1);
    EXPECT_EQ(box.selection().bullet(), true);
    EXPECT_EQ(box.selection().indent(), 360);
}

TEST(RichTextBox, AnEmptyBoxIsAWholeDocumentInTheDefaultFont) {
    RichTextBox box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(box.Text(), "");
    EXPECT_EQ(box.selection().fontName(), "Comic Sans MS");
    EXPECT_EQ(box.selection().fontSize(), 10.0);
    const QSignalSpy changes(&box, &RichTextBox::contentChanged);
    box.setDefaultFontChoice({.name = "Arial", .points = 12, .bold = true, .colour = 0xFF0000});
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(box.selection().fontName(), "Arial");
    EXPECT_EQ(box.selection().colour(), 0xFF0000);
    const QString written = box.TextRTF();
    EXPECT_TRUE(written.endsWith(" " + kTail)) << written.toStdString();
    QTest::keyClicks(&box, "hello");
    EXPECT_GT(changes.count(), 0);
    select(box, 0, 5);
    EXPECT_EQ(box.selection().bold(), true);
    EXPECT_EQ(box.selection().fontSize(), 12.0);
    const QString before = box.TextRTF();
    box.setDefaultFontChoice({.name = "Courier", .points = 20});
    EXPECT_EQ(box.TextRTF(), before); // a text that is shown is left alone
}

TEST(RichTextBox, TextPutInThePlaceOfTheTailBecomesTheLastParagraph) {
    RichTextBox box;
    const auto append = [&box](const QString& text, bool separate) {
        QString rtf = box.TextRTF();
        rtf.chop(11);
        box.setTextRTF(rtf + (separate ? "\\par\r\n" : "") + text);
    };
    append("\\b [24/11/26 14:05 Anna Berg] - \\cf0\\b0  }", false);
    EXPECT_EQ(box.Text(), "[24/11/26 14:05 Anna Berg] -  ");
    EXPECT_EQ(box.selection().fontSize(), 10.0);
    append("24/11/2026 }", false);
    append("\\b [x] - \\cf0\\b0  }", true);
    EXPECT_EQ(box.Text(), "[24/11/26 14:05 Anna Berg] -  24/11/2026 \r\n[x] -  ");
    box.moveCursor(QTextCursor::End);
    EXPECT_EQ(box.selection().bold(), false);
    select(box, 2, 3);
    EXPECT_EQ(box.selection().bold(), true);
}

TEST(RichTextBox, EachSelectionPropertyIsStoredAndIsOneUndoStep) {
    struct Case {
        const char* name;
        void (*set)(RichTextBox&);
        const char* written;
    };
    const Case cases[] = {
        {"bold", [](RichTextBox& b) { b.selection().setBold(true); }, "\\b\\f0"},
        {"italic", [](RichTextBox& b) { b.selection().setItalic(true); }, "\\i\\f0"},
        {"underline", [](RichTextBox& b) { b.selection().setUnderline(true); }, "\\ul\\f0"},
        {"strike", [](RichTextBox& b) { b.selection().setStrikeThru(true); }, "\\strike\\f0"},
        {"font", [](RichTextBox& b) { b.selection().setFontName("No Such Font"); },
         "No Such Font;"},
        {"size", [](RichTextBox& b) { b.selection().setFontSize(14.5); }, "\\fs29"},
        {"colour", [](RichTextBox& b) { b.selection().setColour(0x0000FF); },
         "\\red255\\green0\\blue0;"},
        {"right", [](RichTextBox& b) { b.selection().setAlignment(TextAlignment::Right); }, "\\qr"},
        {"centre", [](RichTextBox& b) { b.selection().setAlignment(TextAlignment::Center); },
         "\\qc"},
        {"bullet", [](RichTextBox& b) { b.selection().setBullet(true); }, "\\fi-360\\li360"},
        {"indent", [](RichTextBox& b) { b.selection().setIndent(20); }, "\\li20"},
        {"below none", [](RichTextBox& b) { b.selection().setIndent(-20); }, "\\uc1\\pard\\cf0"},
    };
    for (const Case& c : cases) {
        RichTextBox box;
        box.setText("one\r\ntwo");
        const QString before = box.TextRTF();
        select(box, 0, 4); // up to where the next paragraph begins
        c.set(box);
        const QString after = box.TextRTF();
        EXPECT_TRUE(after.contains(c.written)) << c.name << "\n" << after.toStdString();
        select(box, 4, 3); // and that is left alone
        EXPECT_EQ(box.selection().alignment(), TextAlignment::Left) << c.name;
        EXPECT_EQ(box.selection().bullet(), false) << c.name;
        EXPECT_EQ(box.selection().indent(), 0) << c.name;
        EXPECT_EQ(box.selection().fontSize(), 10) << c.name;
        box.setTextRTF(after);
        EXPECT_EQ(box.TextRTF(), after) << c.name;
        box.setText("one\r\ntwo");
        select(box, 0, 3);
        c.set(box);
        box.undo();
        EXPECT_EQ(box.TextRTF(), before) << c.name;
    }
}

TEST(RichTextBox, EnterAndBackspaceLeaveAList) {
    RichTextBox box;
    box.selection().setBullet(true);
    QTest::keyClicks(&box, "one");
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClicks(&box, "two");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.selection().bullet(), true);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.selection().bullet(), false);
    EXPECT_EQ(box.selection().indent(), 0);
    QTest::keyClicks(&box, "plain");
    EXPECT_EQ(box.Text(), "one\r\ntwo\r\nplain");
    select(box, 4);
    EXPECT_EQ(box.selection().bullet(), true);
    QTest::keyClick(&box, Qt::Key_Backspace);
    EXPECT_EQ(box.selection().bullet(), false);
    EXPECT_EQ(box.Text(), "one\r\ntwo\r\nplain");
}

TEST(RichTextBox, TextThatIsNoRtfIsShownPlain) {
    RichTextBox box;
    box.setTextRTF("just {text}\nlines");
    EXPECT_EQ(box.Text(), "just {text}\r\nlines");
    EXPECT_EQ(box.selection().fontName(), "Comic Sans MS");
}

} // namespace
} // namespace yrw
