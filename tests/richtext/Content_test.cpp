#include "platform/richtext/RichTextBox.h"

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Reader.h"
#include "tests/driving/Select.h"
#include "tests/rtf/Bodies.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPalette>
#include <QTest>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

namespace yrw {
namespace {

using test::select;

QString around(const QByteArray& body) {
    return QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}"
                          "{\\colortbl ;\\red255\\green255\\blue0;}{\\*\\themedata 00}{\\info{"
                          "\\author A}}\\uc1\\pard\\fs20 ") +
           QString::fromLatin1(body) + u'}';
}

TEST(Content, GoesThroughTheEditorWithoutLoss) {
    for (const char* body : rtf::kBodies) {
        RichTextBox box;
        const QString stored = QString::fromLatin1(rtf::kHead + body + "}");
        box.setTextRTF(stored);
        const QString written = box.TextRTF();
        const rtf::Document before = rtf::read(QStringView(stored));
        const rtf::Document after = rtf::read(QStringView(written));
        EXPECT_EQ(before.plainText().toStdString(), after.plainText().toStdString()) << body;
        EXPECT_EQ(before.kept, after.kept);
        EXPECT_EQ(before.fields, after.fields) << body;
        if (!QByteArrayView(body).contains("\\v x")) { // hidden text becomes a kept group
            EXPECT_TRUE(before == after) << body << "\n" << written.toStdString();
        }
        box.setTextRTF(written);
        EXPECT_EQ(box.TextRTF(), written) << body;
    }
}

TEST(Content, AutomaticTextIsReadOnAnyGround) {
    RichTextBox box;
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(40, 40, 40));
    dark.setColor(QPalette::Text, Qt::white);
    box.setPalette(dark);
    const QString stored = around("\\highlight1 marked\\highlight0\\par\\pard{\\*\\pn\\pnlvlbody"
                                  "\\pndec\\pnstart5{\\pntxta .}}\\fi-360\\li720 five");
    box.setTextRTF(stored);
    EXPECT_EQ(rtf::read(QStringView(box.TextRTF())), rtf::read(QStringView(stored)));
    box.resize(300, 100);
    const QImage picture = box.grab().toImage();
    bool number = false;
    bool letters = false;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 5; x < 60; ++x) {
            const QRgb dot = picture.pixel(x, y);
            letters = letters || (dot == qRgb(0, 0, 0) && y < 14);
            number = number || (qGray(dot) > 200 && y > 20 && x < 48);
        }
    }
    EXPECT_TRUE(letters); // black on yellow
    EXPECT_TRUE(number);  // white on grey
    select(box, 2);
    EXPECT_EQ(box.selection().colour(), 0);
    box.selectAll();
    box.selection().setColour(0x0000FF);
    EXPECT_EQ(box.selection().colour(), 0x0000FF);
}

TEST(Content, TablesWithNothingBetweenStayTwo) {
    const QString table = around("\\trowd\\cellx2000\\pard\\intbl a\\cell\\row\\pard x");
    RichTextBox box;
    box.setTextRTF(table);
    select(box, box.document()->characterCount() - 1);
    box.transfer().insertRtf(table);
    select(box, static_cast<int>(box.document()->toPlainText().indexOf(u'x')));
    QTest::keyClick(&box, Qt::Key_Delete); // what stood between them
    EXPECT_EQ(box.document()->rootFrame()->childFrames().size(), 2);
    box.setTextRTF(box.TextRTF());
    EXPECT_EQ(box.document()->rootFrame()->childFrames().size(), 2);
    EXPECT_EQ(box.Text(), "a\r\n\r\na\r\nx");
}

TEST(Content, TextTypedIntoACellThatARowLacksIsKept) {
    RichTextBox box;
    box.setTextRTF(
        around("\\trowd\\cellx900\\intbl a\\cell\\row\\trowd\\cellx900\\cellx1800\\intbl "
               "b\\cell c\\cell\\row\\pard x"));
    auto& table = dynamic_cast<QTextTable&>(*box.document()->rootFrame()->childFrames().front());
    box.setTextCursor(table.cellAt(0, 1).firstCursorPosition());
    QTest::keyClicks(&box, "typed");
    box.setTextRTF(box.TextRTF());
    EXPECT_EQ(box.Text(), "a\ttyped\r\nb\tc\r\nx");
}

TEST(Content, ALongListIsNumberedOnBehindThePlaceWhereItIsCut) {
    const auto shownAtEnd = [](int first, int items) {
        RichTextBox box;
        box.resize(300, 200);
        box.setTextRTF(around("{\\*\\pn\\pnlvlbody\\pndec\\pnstart" + QByteArray::number(first) +
                              "{\\pntxta.}}\\fi-600\\li720 " +
                              QByteArray("i\\par ").repeated(items - 1) + "i"));
        box.moveCursor(QTextCursor::End);
        const int line = box.cursorRect().top();
        return box.viewport()->grab(QRect(0, line, 60, 15)).toImage();
    };
    EXPECT_EQ(shownAtEnd(3, 450), shownAtEnd(452, 1));
    EXPECT_NE(shownAtEnd(3, 450), shownAtEnd(252, 1));
}

TEST(Content, ATablePastedIntoACellStaysATable) {
    RichTextBox box;
    const QString table = around("\\trowd\\cellx2000\\pard\\intbl a\\cell\\row\\pard x");
    box.setTextRTF(table);
    for (int i = 0; i < 12; ++i) { // more than can lie in each other
        select(box, std::min(i + 1, rtf::kMostNested));
        box.transfer().insertRtf(table);
    }
    const QString written = box.TextRTF();
    EXPECT_TRUE(written.contains("\\itap8"));
    EXPECT_FALSE(written.contains("\\itap9"));
    EXPECT_EQ(box.Text().count(u'a'), 13);
    box.setTextRTF(written);
    EXPECT_EQ(box.TextRTF(), written);
}

TEST(Content, AnObjectAloneIsNoTextButContent) {
    RichTextBox box;
    box.setTextRTF(around("{\\object\\objemb{\\*\\objclass Odd}{\\*\\objdata 01}}"));
    EXPECT_EQ(box.Text(), "");
    EXPECT_FALSE(box.isEmpty());
    EXPECT_EQ(box.objects().count(), 1);
    EXPECT_EQ(box.objects().name(0), "Odd");
    EXPECT_FALSE(box.objects().file(0));
}

TEST(Content, AStoppedReadingShowsWhatItReadAndTillThenWhatWasThere) {
    RichTextBox box;
    box.setText("before");
    int steps = 0;
    const bool whole = box.setTextRTF(
        around(QByteArray("a\\par\\trowd\\cellx900\\intbl b\\cell\\row ").repeated(9)),
        [&](int percent) {
            EXPECT_EQ(box.Text(), "before");
            EXPECT_LT(percent, 100);
            return ++steps < 8;
        });
    EXPECT_FALSE(whole);
    EXPECT_EQ(steps, 8);
    EXPECT_TRUE(box.isIncomplete());
    EXPECT_EQ(box.Text().count('a'), 2);
    EXPECT_EQ(box.Text().count('b'), 1);
}

TEST(Content, LongListsAndTablesAreWrittenAsOne) {
    for (const char* piece :
         {"{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec\\pnstart3{\\pntxta.}}item\\par ",
          "{\\pntext\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}item\\par ",
          "\\trowd\\cellx900\\intbl item\\cell\\row "}) {
        const QString rtf = around(QByteArray(QByteArray(piece).repeated(450) + "\\pard end"));
        RichTextBox box;
        box.setTextRTF(rtf);
        EXPECT_EQ(rtf::read(QStringView(box.TextRTF())), rtf::read(QStringView(rtf))) << piece;
    }
}

TEST(Content, TheFirstLookAtALongTableLaysOutLittleOfIt) {
    RichTextBox box;
    box.resize(300, 200);
    box.setTextRTF(around(QByteArray("\\trowd\\cellx900\\intbl a\\cell\\row ").repeated(2000)));
    (void)box.grab();
    EXPECT_EQ(box.document()->lastBlock().previous().layout()->lineCount(), 0);
}

TEST(Content, ADarkColourIsPaintedLighterOnADarkGroundAndKept) {
    const QString stored =
        QStringLiteral("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}{\\colortbl;\\red0\\green0\\blue255;"
                       "\\red255\\green255\\blue0;}\\f0\\fs96\\cf1 blue\\par "
                       "\\cf0 plain\\par\\cf1\\highlight2 own\\par}");
    RichTextBox box;
    box.resize(500, 400);
    box.setTextRTF(stored);
    const QString written = box.TextRTF();
    const auto shows = [&box](QRgb colour) {
        const QImage shown = box.grab().toImage();
        for (int y = 0; y < shown.height() / 3; ++y) { // the first line
            for (int x = 0; x < shown.width(); ++x) {
                if (shown.pixel(x, y) == colour) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(shows(qRgb(0, 0, 255)));
    QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a));
    dark.setColor(QPalette::Base, QColor(0x2a, 0x2a, 0x2a));
    box.setPalette(dark);
    EXPECT_FALSE(shows(qRgb(0, 0, 255)));
    EXPECT_EQ(box.extraSelections().size(), 1); // what has a ground of its own stays as it is
    EXPECT_EQ(box.TextRTF(), written);
    EXPECT_EQ(box.selection().colour(), 0xff0000);
    EXPECT_FALSE(box.document()->isModified());
    box.setPalette(QPalette(Qt::lightGray));
    EXPECT_TRUE(shows(qRgb(0, 0, 255)));
}

} // namespace
} // namespace yrw
