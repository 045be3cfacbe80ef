#include "tests/richtext/HostileNotes.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/richtext/Pictures.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/TableLimits.h"
#include "platform/rtf/Reader.h"
#include "tests/driving/Select.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include <cstdio>
#include <ostream>

namespace yrw {

namespace test {

void PrintTo(const HostileNote& note, std::ostream* stream);
void PrintTo(const HostileNote& note, std::ostream* stream) {
    *stream << note.name;
}

} // namespace test

namespace {

using richtext::InlineRenderer;
using test::select;

class HostileNotes : public testing::TestWithParam<test::HostileNote> {};

TEST_P(HostileNotes, IsOpened) {
    const test::Opening opening = test::openInChild(GetParam().name);
    std::printf("%-26s longest wait %5d ms, shown in %5d ms, peak %4d MB\n", GetParam().name,
                opening.longestMs, opening.wholeMs, opening.peakMegabytes);
    EXPECT_TRUE(opening.finished);
    EXPECT_LT(opening.longestMs, 5000);
}

INSTANTIATE_TEST_SUITE_P(All, HostileNotes, testing::ValuesIn(test::hostileNotes()));

QString noteNamed(const char* name) {
    for (const test::HostileNote& note : test::hostileNotes()) {
        if (qstrcmp(note.name, name) == 0) {
            return QString::fromLatin1(note.make());
        }
    }
    ADD_FAILURE() << name;
    return {};
}

TEST(Hostile, OnlyPicturesInViewAreDecodedAndOnlySoManyDotsAreKept) {
    RichTextBox box;
    box.resize(900, 500);
    box.show();
    box.setTextRTF(noteNamed("forty pictures in view"));
    const auto* const renderer = dynamic_cast<InlineRenderer*>(
        box.document()->documentLayout()->handlerForObject(richtext::kInlineObject));
    ASSERT_NE(renderer, nullptr);
    EXPECT_EQ(renderer->decodedCount(), 0);
    const auto settled = [&] {
        box.viewport()->repaint();
        return renderer->decodedCount() > 0 && !renderer->isWaiting();
    };
    EXPECT_TRUE(QTest::qWaitFor(settled, 30000));
    EXPECT_GT(renderer->decodedCount(), 5);
    EXPECT_LT(renderer->decodedCount(), 30); // the others are further down
    EXPECT_LE(renderer->keptDots(), 40 * 30 * 30);
    box.setTextRTF(noteNamed("forty pictures"));
    for (int i = 0; i < 8; ++i) {
        box.verticalScrollBar()->setValue(i * 3000);
        EXPECT_TRUE(QTest::qWaitFor(settled, 30000));
        EXPECT_GT(renderer->keptDots(), 1000000);
        EXPECT_LE(renderer->keptDots(), InlineRenderer::kMostKeptDots);
    }
    EXPECT_GT(renderer->decodedCount(), 6);
}

TEST(Hostile, APictureThatClaimsTooMuchIsNotDecoded) {
    QImage large(9000, 9000, QImage::Format_Grayscale8);
    large.fill(0);
    QBuffer data;
    data.open(QIODevice::WriteOnly);
    ASSERT_TRUE(large.save(&data, "JPG"));
    EXPECT_TRUE(richtext::decodeImage(data.data(), richtext::kMostStoredDots).isNull());
}

/// The greatest number of tables in each other.
int deepestTable(const QTextFrame& frame) {
    int deepest = 0;
    for (const QTextFrame* inner : frame.childFrames()) {
        deepest = std::max(deepest, deepestTable(*inner));
    }
    return deepest + (qobject_cast<const QTextTable*>(&frame) != nullptr ? 1 : 0);
}

TEST(Hostile, TablesThatAreTooMuchWorkAreFlattenedAndTheNoteIsNotWhole) {
    for (const char* name :
         {"nested tables of 20 KB", "nested tables of 200 KB", "one cell full of text"}) {
        const QString stored = noteNamed(name);
        RichTextBox box;
        EXPECT_FALSE(box.setTextRTF(stored)) << name;
        EXPECT_TRUE(box.isIncomplete());
        EXPECT_FALSE(box.shortening().isEmpty());
        EXPECT_TRUE(box.Text().startsWith(box.shortening()));
        EXPECT_LT(deepestTable(*box.document()->rootFrame()), rtf::kMostNested);
        const rtf::Document before = rtf::read(QStringView(stored));
        EXPECT_EQ(box.Text().count(u'x'), before.text.count(u'x') + box.shortening().count(u'x'));
        box.setTextRTF(QStringLiteral("{\\rtf1 plain}"));
        EXPECT_EQ(box.shortening(), "");
    }
    // The work that is left is bounded, whatever lies in what.
    rtf::Document model = rtf::read(QStringView(noteNamed("nested tables of 200 KB")));
    EXPECT_TRUE(richtext::flattenTables(model));
    EXPECT_FALSE(richtext::flattenTables(model));
    EXPECT_TRUE(richtext::flattenTables(model, rtf::kMostNested));
    for (const rtf::Paragraph& paragraph : model.paragraphs) {
        EXPECT_EQ(paragraph.row, -1);
    }
}

TEST(Hostile, ALongParagraphIsShownInPiecesAndIsOneParagraphStill) {
    const QString stored =
        QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Arial;}}first\\par\\pard\\fi300\\sb100 ") +
        QStringLiteral("lorem ipsum \\b dolor\\b0  ").repeated(3000) + QString(25000, u'w') +
        QStringLiteral("\\par\\pard last}");
    RichTextBox box;
    EXPECT_TRUE(box.setTextRTF(stored));
    EXPECT_GT(box.document()->blockCount(), 8);
    for (QTextBlock block = box.document()->begin(); block.isValid(); block = block.next()) {
        EXPECT_LE(block.length(), 10001);
    }
    EXPECT_EQ(rtf::read(QStringView(box.TextRTF())), rtf::read(QStringView(stored)));
    // The format of a piece is that of the whole, and a real end of a paragraph stays one.
    select(box, box.document()->findBlockByNumber(4).position() + 5);
    box.selection().setAlignment(TextAlignment::Right);
    EXPECT_EQ(box.selection().alignment(), TextAlignment::Right);
    EXPECT_EQ(box.TextRTF().count("\\qr"), 1);
    EXPECT_EQ(box.Text().count("\r\n"), 2);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.Text().count("\r\n"), 3);
    EXPECT_EQ(box.TextRTF().count("\\par\r\n"), 4);
    box.undo();
    const int end = box.document()->findBlockByNumber(5).position();
    for (const int at : {end, end - 1}) { // where a piece begins, and where the one before ends
        select(box, at);
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_EQ(box.Text().count("\r\n"), 3) << at - end;
        box.undo();
    }
    select(box, end - 5); // two paragraphs put into a piece end no other
    box.transfer().insertRtf("{\\rtf1 one\\par two}");
    EXPECT_EQ(box.Text().count("\r\n"), 3);
    box.undo();
    // Copied and put elsewhere it is one paragraph too.
    box.selectAll();
    box.copy();
    RichTextBox other;
    other.setText("a");
    other.paste();
    EXPECT_EQ(other.Text(), box.Text() + u'a');
}

TEST(Hostile, AParagraphOfManyLinesOrRunsIsShownInPiecesAndIsOneParagraphStill) {
    for (const char* part : {"a\\line ", "\\b a\\b0 b"}) {
        const QString stored = QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Arial;}}first\\par ") +
                               QString::fromLatin1(part).repeated(4000) +
                               QStringLiteral("\\par last}");
        RichTextBox box;
        EXPECT_TRUE(box.setTextRTF(stored)) << part;
        EXPECT_GT(box.document()->blockCount(), 5) << part;
        EXPECT_EQ(rtf::read(QStringView(box.TextRTF())), rtf::read(QStringView(stored))) << part;
    }
}

TEST(Hostile, ANoteThatIsTooMuchShowsItsBeginningAndSaysSo) {
    const struct {
        const char* name;
        bool whole;
        bool high; ///< else its parts are too many
    } cases[] = {{"lines in one paragraph", false, true},
                 {"tall lines", false, true},
                 {"tall gaps", false, true},
                 {"tall pictures", false, true},
                 {"a million objects", false, false},
                 {"one paragraph", true, true},
                 {"one word", true, true},
                 {"ordinary", true, true}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        RichTextBox box;
        box.resize(400, 500);
        EXPECT_EQ(box.setTextRTF(noteNamed(each.name)), each.whole);
        EXPECT_EQ(box.isIncomplete(), !each.whole);
        EXPECT_EQ(box.shortening().isEmpty(), each.whole);
        EXPECT_TRUE(box.Text().startsWith(box.shortening()));
        if (!each.whole && each.high) { // and what is shown is laid out to its end
            const double height = box.document()->size().height();
            EXPECT_GT(height, 1e6);
            EXPECT_LT(height, 8.3e6);
        } else if (!each.whole) {
            EXPECT_GT(box.objects().count(), 1000);
            EXPECT_LT(box.objects().count(), 200000);
        }
    }
}

TEST(Hostile, NothingIsPastedThatWouldMakeANoteTooHigh) {
    const auto lines = [](int count) {
        return QByteArray("{\\rtf1\\fs400 " + QByteArray("x\\par ").repeated(count) + "}");
    };
    RichTextBox box;
    box.resize(400, 500);
    ASSERT_TRUE(box.setTextRTF(QString::fromLatin1(lines(12000))));
    EXPECT_GT(box.document()->size().height(), 4e6); // and it is laid out
    for (const auto& [count, kept] : {std::pair(10, 12010), std::pair(12000, 12010)}) {
        auto* const data = new QMimeData;
        data->setData("text/rtf", lines(count));
        QGuiApplication::clipboard()->setMimeData(data);
        box.paste();
        EXPECT_EQ(box.Text().count(u'x'), kept);
        EXPECT_FALSE(box.isReadOnly());
    }
    box.selectAll();
    box.paste(); // in its place there is room
    EXPECT_EQ(box.Text().count(u'x'), 12000);
}

} // namespace
} // namespace yrw
