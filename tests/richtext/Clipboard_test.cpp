#include "platform/richtext/RichTextBox.h"
#include "tests/driving/Desktop.h"
#include "tests/driving/Select.h"
#include "tests/support/SilentPrompt.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

#include <ctime>

namespace yrw {
namespace {

using test::select;

/// What another program put on the clipboard.
void offer(const QString& type, const QByteArray& data) {
    auto* const mime = new QMimeData; // the clipboard owns it
    mime->setData(type, data);
    QApplication::clipboard()->setMimeData(mime);
}

const QString kStyled =
    "{\\rtf1\\uc1{\\fonttbl{\\f0 Arial;}}{\\colortbl ;\\red255\\green0\\blue0;}\\f0\\fs20 one "
    "\\b\\cf1\\fs40 two\\b0\\cf0\\fs20\\par\\pard{\\*\\pn\\pnlvlblt}\\li360\\fi-360 three\\par}";

TEST(Clipboard, CopyOffersRtfHtmlAndPlainText) {
    RichTextBox box;
    box.setTextRTF(kStyled);
    select(box, 2, 8);
    box.copy();
    const QMimeData* const mime = QApplication::clipboard()->mimeData();
    EXPECT_EQ(mime->text(), "e two\nth");
    EXPECT_TRUE(mime->html().contains("two"));
    EXPECT_TRUE(mime->data("text/rtf").startsWith("{\\rtf1"));
    RichTextBox other;
    other.setText("");
    other.paste();
    EXPECT_EQ(other.Text(), "e two\r\nth");
    select(other, 3, 2);
    EXPECT_EQ(other.selection().bold(), true);
    EXPECT_EQ(other.selection().colour(), 0x0000FF);
    EXPECT_EQ(other.selection().fontSize(), 20.0);
    EXPECT_EQ(other.selection().fontName(), "Arial");
}

TEST(Clipboard, ForeignTextTakesTheLookAroundItUnlessItIsToKeepItsOwn) {
    const QTemporaryDir folder;
    const QString picture = folder.filePath("p.png"); // no page may have it read
    QImage dots(8, 8, QImage::Format_RGB32);
    dots.fill(Qt::green);
    ASSERT_TRUE(dots.save(picture));
    const QByteArray html =
        "<p style='margin:0'>a <b style='color:red;font-size:30pt;font-family:Foo'>"
        "bold</b> <a href='http://a.example/'>link</a></p><ol><li>item</li></ol>"
        "<img src='" +
        QUrl::fromLocalFile(picture).toEncoded() + "'><img src='" + picture.toUtf8() +
        "'><p style='background-image:url(\"" + picture.toUtf8() + "\")'>end</p>";
    for (const bool asHtml : {true, false}) {
        for (const bool keep : {false, true}) {
            RichTextBox box;
            box.setText("xy");
            select(box, 1);
            box.transfer().setKeepsLook(keep);
            offer(asHtml ? "text/html" : "text/rtf", asHtml ? html : kStyled.toLatin1());
            box.paste();
            const int bold = static_cast<int>(box.Text().indexOf(asHtml ? "bold" : "two"));
            ASSERT_GT(bold, 0);
            select(box, bold, 2);
            EXPECT_EQ(box.selection().bold(), true);
            EXPECT_EQ(box.selection().colour(), keep ? 0x0000FF : 0);
            EXPECT_EQ(box.selection().fontName(), !keep    ? "Comic Sans MS"
                                                  : asHtml ? "Foo"
                                                           : "Arial");
            EXPECT_EQ(box.selection().fontSize() == 10.0, !keep);
            const QString rtf = box.TextRTF();
            EXPECT_EQ(rtf.contains("HYPERLINK \"http://a.example/\""), asHtml);
            EXPECT_TRUE(rtf.contains(asHtml ? "\\pndec" : "\\pnlvlblt")) << rtf.toStdString();
            EXPECT_FALSE(rtf.contains("\\pict"));
        }
    }
}

TEST(Clipboard, PastedRtfCannotDamageTheNote) {
    RichTextBox box;
    box.setText("note");
    offer("text/rtf", "{\\rtf1{\\*\\themedata 00}{\\b cut {\\pict\\pngblip 8");
    box.paste();
    EXPECT_FALSE(box.isIncomplete());
    EXPECT_FALSE(box.TextRTF().contains("themedata"));
    EXPECT_EQ(box.Text(), "cut note");
}

TEST(Clipboard, SymbolsKeepTheirFontInAnyLook) {
    RichTextBox box;
    offer("text/rtf", "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}}a\\f1\\'b7}");
    box.paste();
    select(box, 0, 1);
    EXPECT_EQ(box.selection().fontName(), "Comic Sans MS");
    select(box, 1, 1);
    EXPECT_EQ(box.selection().fontName(), "Symbol");
}

TEST(Clipboard, CtrlShiftVPastesPlainText) {
    RichTextBox box;
    box.setTextRTF(kStyled);
    box.selectAll();
    box.copy();
    RichTextBox other;
    other.setText("");
    QTest::keyClick(&other, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(other.Text(), "one two\r\nthree");
    other.selectAll();
    EXPECT_EQ(other.selection().bold(), false);
    EXPECT_EQ(other.selection().bullet(), false);
}

TEST(Clipboard, APageBringsThePicturesThatItHolds) {
    QImage dots(8, 8, QImage::Format_RGB32);
    dots.fill(Qt::green);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    dots.save(&buffer, "PNG");
    offer("text/html", "a<img src='data:image/png;base64," + png.toBase64() + "'>b");
    RichTextBox box;
    box.paste();
    EXPECT_EQ(box.TextRTF().count("\\pngblip"), 1);
}

TEST(Clipboard, WhatIsNoFileOrTooLargeIsNotRead) {
    const QTemporaryDir folder;
    const QString pipe = folder.filePath("pipe.png");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QFile giant(folder.filePath("giant.png"));
    ASSERT_TRUE(giant.open(QIODevice::WriteOnly));
    ASSERT_TRUE(giant.resize(1LL << 40)); // it takes no room on the disk
    for (const QString& path :
         {pipe, QStringLiteral("/dev/zero"), giant.fileName(), folder.path()}) {
        RichTextBox box;
        SilentPrompt prompt;
        box.setPrompt(&prompt);
        auto* const mime = new QMimeData; // the clipboard owns it
        mime->setUrls({QUrl::fromLocalFile(path)});
        QApplication::clipboard()->setMimeData(mime);
        box.paste();
        QCoreApplication::processEvents();
        EXPECT_FALSE(prompt.told.isEmpty()) << path.toStdString();
        EXPECT_TRUE(box.isEmpty());
    }
    RichTextBox box;
    SilentPrompt prompt;
    box.setPrompt(&prompt);
    box.objects().setLargestFile(1000);
    for (const char* type : {"text/rtf", "text/html", "text/plain"}) {
        offer(type, "{\\rtf1 " + QByteArray(30000, 'x') + "}");
        box.paste();
        EXPECT_EQ(prompt.told.takeLast(), "What was copied has 30 KB; at most 1 KB can be pasted.");
        EXPECT_TRUE(box.isEmpty());
    }
}

TEST(Clipboard, MuchIsPastedInTimeAsOneStepThatCanBeStopped) {
    struct Case {
        const char* type;
        QByteArray data;
        int letters;
    };
    const Case cases[] = {
        {"text/plain", QByteArray("lorem ipsum x\n").repeated(100000), 100000},
        {"text/plain", QByteArray("lorem ipsum x ").repeated(100000), 100000},
        {"text/html",
         QByteArray("<div>").repeated(90000) + "x" + QByteArray("</div>").repeated(90000), 1},
        {"text/html", QByteArray("<b><span>").repeated(50000) + "x", 1},
        {"text/html", QByteArray("<table><tr><td>x").repeated(20000), 20000},
        {"text/html", QByteArray("<p>x").repeated(50000), 50000},
        {"text/rtf", "{\\rtf1 " + QByteArray("x\\par ").repeated(100000) + "}", 100000},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.data.left(12).toStdString());
        RichTextBox box;
        box.resize(600, 300);
        box.show();
        box.setText("before");
        select(box, 3);
        QTest::keyClicks(&box, "typed");
        offer(each.type, each.data);
        for (const int stopAt : {1, 5}) {
            int steps = 0;
            box.transfer().setWatch([&]() -> WorkStep {
                return [&](int) {
                    EXPECT_EQ(box.Text(), "beftypedore"); // as a draft would save it now
                    return ++steps < stopAt;
                };
            });
            box.paste();
            if (steps < stopAt) { // it was so little that nobody was asked
                box.undo();
            }
            EXPECT_EQ(box.Text(), "beftypedore");
            EXPECT_FALSE(box.isReadOnly());
        }
        box.transfer().setWatch([] { return [](int) { return true; }; });
        const std::clock_t start = std::clock();
        box.paste();
        (void)box.grab();
        EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
        EXPECT_EQ(box.Text().count(u'x'), each.letters);
        box.undo();
        EXPECT_EQ(box.Text(), "beftypedore");
        EXPECT_EQ(box.textCursor().selectionStart(), 8);
        QTest::keyClicks(&box, "!");
        EXPECT_EQ(box.Text(), "beftyped!ore");
    }
}

TEST(Links, OpenOnCtrlClickAfterTheAddressWasShown) {
    struct Case {
        const char* target;
        Qt::KeyboardModifiers keys;
        PromptAnswer answer;
        bool opens;
        bool asks;
    };
    const Case cases[] = {
        {"http://a.example/", Qt::ControlModifier, PromptAnswer::Yes, true, true},
        {"http://a.example/", Qt::ControlModifier, PromptAnswer::No, false, true},
        {"http://a.example/", Qt::NoModifier, PromptAnswer::Yes, false, false},
        {"file:///bin/sh", Qt::ControlModifier, PromptAnswer::Yes, false, true},
    };
    for (const Case& c : cases) {
        RichTextBox box;
        SilentPrompt prompt;
        prompt.answer = c.answer;
        const test::Desktop desktop(QUrl(c.target).scheme());
        box.setPrompt(&prompt);
        box.resize(300, 100);
        box.setTextRTF(QStringLiteral("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"%1\"}{\\fldrslt a "
                                      "long link}}}")
                           .arg(QLatin1String(c.target)));
        box.show();
        select(box, 3);
        QTest::mouseClick(box.viewport(), Qt::LeftButton, c.keys, box.cursorRect().center());
        EXPECT_EQ(desktop.opened, c.opens ? QStringList(c.target) : QStringList());
        EXPECT_EQ(prompt.told.join(u' ').contains(c.target), c.asks);
    }
}

TEST(Links, WhatIsTypedBehindALinkIsNotPartOfIt) {
    RichTextBox box;
    box.setTextRTF("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt link}}}");
    select(box, 4);
    QTest::keyClicks(&box, " more");
    EXPECT_TRUE(box.TextRTF().contains("{\\fldrslt link}} more"));
    select(box, 2);
    QTest::keyClicks(&box, "x");
    EXPECT_TRUE(box.TextRTF().contains("{\\fldrslt lixnk}} more"));
}

} // namespace
} // namespace yrw
