#include "platform/richtext/RichTextBox.h"
#include "tests/support/SilentPrompt.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

namespace yrw {
namespace {

void select(RichTextBox& box, int start, int length) {
    box.setSelStart(start);
    box.setSelLength(length);
}

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
    EXPECT_EQ(other.SelBold(), true);
    EXPECT_EQ(other.SelColor(), 0x0000FF);
    EXPECT_EQ(other.SelFontSize(), 20.0);
    EXPECT_EQ(other.SelFontName(), "Arial");
}

TEST(Clipboard, ForeignTextTakesTheLookAroundItUnlessItIsToKeepItsOwn) {
    const QByteArray html =
        "<p style='margin:0'>a <b style='color:red;font-size:30pt;font-family:Foo'>"
        "bold</b> <a href='http://a.example/'>link</a></p><ol><li>item</li></ol>"
        "<img src='file:///etc/hostname'>";
    for (const bool asHtml : {true, false}) {
        for (const bool keep : {false, true}) {
            RichTextBox box;
            box.setText("xy");
            box.setSelStart(1);
            box.setPasteKeepsLook(keep);
            offer(asHtml ? "text/html" : "text/rtf", asHtml ? html : kStyled.toLatin1());
            box.paste();
            const int bold = static_cast<int>(box.Text().indexOf(asHtml ? "bold" : "two"));
            ASSERT_GT(bold, 0);
            select(box, bold, 2);
            EXPECT_EQ(box.SelBold(), true);
            EXPECT_EQ(box.SelColor(), keep ? 0x0000FF : 0);
            EXPECT_EQ(box.SelFontName(), !keep ? "Comic Sans MS" : asHtml ? "Foo" : "Arial");
            EXPECT_EQ(box.SelFontSize() == 10.0, !keep);
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
    EXPECT_EQ(box.Text(), "cut  note");
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
    EXPECT_EQ(other.SelBold(), false);
    EXPECT_EQ(other.SelBullet(), false);
}

TEST(Clipboard, PicturesArePastedAsPictures) {
    QImage picture(4, 4, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QApplication::clipboard()->setImage(picture);
    RichTextBox box;
    box.paste();
    EXPECT_TRUE(box.TextRTF().contains("\\pict\\pngblip"));
}

/// Answers questions about links.
class LinkDoor : public SilentPrompt {
public:
    void message(const QString& text, const QString&, PromptIcon) override { said = text; }
    PromptAnswer question(const QString& text, const QString&, PromptButtons, PromptIcon,
                          PromptAnswer) override {
        said = text;
        return answer;
    }

    QString said;
    PromptAnswer answer = PromptAnswer::Yes;
};

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
        LinkDoor door;
        door.answer = c.answer;
        QList<QUrl> opened;
        box.setPrompt(&door);
        box.setUrlOpener([&opened](const QUrl& url) { opened.append(url); });
        box.resize(300, 100);
        box.setTextRTF(QStringLiteral("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"%1\"}{\\fldrslt a "
                                      "long link}}}")
                           .arg(QLatin1String(c.target)));
        box.show();
        box.setSelStart(3);
        QTest::mouseClick(box.viewport(), Qt::LeftButton, c.keys, box.cursorRect().center());
        EXPECT_EQ(opened.size(), c.opens ? 1 : 0) << c.target;
        EXPECT_EQ(door.said.contains(c.target), c.asks);
    }
}

TEST(Links, WhatIsTypedBehindALinkIsNotPartOfIt) {
    RichTextBox box;
    box.setTextRTF("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt link}}}");
    box.setSelStart(4);
    QTest::keyClicks(&box, " more");
    EXPECT_TRUE(box.TextRTF().contains("{\\fldrslt link}} more"));
    box.setSelStart(2);
    QTest::keyClicks(&box, "x");
    EXPECT_TRUE(box.TextRTF().contains("{\\fldrslt lixnk}} more"));
}

} // namespace
} // namespace yrw
