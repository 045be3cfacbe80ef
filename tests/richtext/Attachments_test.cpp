#include "platform/richtext/RichTextBox.h"

#include "platform/component/AutomationError.h"
#include "platform/richtext/LocalFiles.h"
#include "platform/rtf/EmbeddedObject.h"
#include "tests/driving/Select.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QtEndian>

namespace yrw {
namespace {

using test::select;

class Attachments : public testing::Test {
protected:
    QString file(const QString& name, const QByteArray& content) {
        QFile out(m_folder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return out.fileName();
    }
    QTemporaryDir m_folder;
};

TEST_F(Attachments, AnEmbeddedFileKeepsItsBytesThroughTenSaves) {
    QByteArray content;
    for (int i = 0; i < 5000; ++i) {
        content += static_cast<char>(i * 31);
    }
    for (const ObjectDisplay display : {ObjectDisplay::Content, ObjectDisplay::Icon}) {
        RichTextBox box;
        box.setText("before after");
        select(box, 7);
        box.objects().insertFile(file(QString::fromUtf8("żółw.dat"), content), display);
        EXPECT_EQ(box.textCursor().selectionStart(), 8);
        QTest::keyClicks(&box, "typed ");
        EXPECT_EQ(box.Text(), "before typed after");
        const QString written = box.TextRTF();
        for (int i = 0; i < 10; ++i) {
            box.setTextRTF(box.TextRTF());
        }
        EXPECT_EQ(box.TextRTF(), written);
        ASSERT_EQ(box.objects().count(), 1);
        EXPECT_EQ(box.objects().name(0), QString::fromUtf8("żółw.dat"));
        const auto embedded = box.objects().file(0);
        ASSERT_TRUE(embedded);
        EXPECT_EQ(embedded->data, content);
        EXPECT_EQ(embedded->label, QString::fromUtf8("żółw.dat"));
        const QFileInfo copy(box.objects().copy(0));
        EXPECT_EQ(copy.fileName(), QString::fromUtf8("żółw.dat"));
        EXPECT_EQ(copy.permissions() & QFile::WriteOwner, 0);
        richtext::removeLeftCopies();
        EXPECT_TRUE(QFile::exists(copy.filePath())) << "its program lives";
    }
}

TEST_F(Attachments, ShownContentCarriesTheNameOfItsFile) {
    const auto picture = [this](const QString& name, const QByteArray& content,
                                ObjectDisplay display = ObjectDisplay::Content) {
        RichTextBox box;
        box.objects().insertFile(file(name, content), display);
        return box.objects().picture(0)->data;
    };
    const struct {
        const char* suffix;
        QByteArray content;
    } cases[] = {{".txt", "a list"}, {".rtf", "{\\rtf1 a letter}"}};
    for (const auto& each : cases) {
        EXPECT_NE(picture(QString("first") + each.suffix, each.content),
                  picture(QString("other") + each.suffix, each.content))
            << each.suffix;
        EXPECT_NE(picture(QString("first") + each.suffix, each.content),
                  picture(QString("first") + each.suffix, each.content, ObjectDisplay::Icon))
            << each.suffix;
    }
}

QByteArray number(quint32 value) {
    const quint32 stored = qToLittleEndian(value);
    return {reinterpret_cast<const char*>(&stored), sizeof stored};
}

QByteArray counted(const QByteArray& text) {
    return number(static_cast<quint32>(text.size() + 1)) + text + '\0';
}

/// The stream of an object as older programs stored it; a link where there are no data.
QByteArray stream(const QByteArray& native, const QByteArray& shownAs, const QByteArray& picture) {
    const QByteArray head = number(0x501) + number(native.isEmpty() ? 1 : 2) + counted("PBrush") +
                            counted("C:\\p.bmp") + counted("0 0 8 8");
    const QByteArray data = native.isEmpty() ? counted("net") + QByteArray(8, '\0')
                                             : number(static_cast<quint32>(native.size())) + native;
    return head + data + number(0x501) + number(5) + counted(shownAs) + number(1000) +
           number(static_cast<quint32>(-1000)) + number(static_cast<quint32>(picture.size())) +
           picture;
}

/// How many dots of a box are as green as the test's pictures.
int greenDots(RichTextBox& box) {
    const QImage shown = box.grab().toImage();
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb dot = shown.pixel(x, y); // some formats keep colours nearly
            count += qGreen(dot) > 250 && qRed(dot) < 5 && qBlue(dot) < 5 ? 1 : 0;
        }
    }
    return count;
}

TEST_F(Attachments, APictureShowsWhateverKindItIsCalled) {
    QImage green(40, 40, QImage::Format_RGB32);
    green.fill(Qt::green);
    for (const char* format : {"PNG", "JPG"}) {
        for (const char* word : {"pngblip", "jpegblip"}) {
            QBuffer data;
            data.open(QIODevice::WriteOnly);
            ASSERT_TRUE(green.save(&data, format, 100));
            RichTextBox box;
            box.setTextRTF(QStringLiteral("{\\rtf1{\\pict\\%1 %2}}")
                               .arg(QLatin1String(word), QLatin1String(data.data().toHex())));
            EXPECT_GT(greenDots(box), 0) << format << " as " << word;
        }
    }
}

TEST_F(Attachments, AnOldObjectShowsThePictureInItsDataAndKeepsThemThroughTenSaves) {
    QImage green(8, 8, QImage::Format_RGB32);
    green.fill(Qt::green);
    ASSERT_TRUE(green.save(m_folder.filePath("p.bmp")));
    QFile saved(m_folder.filePath("p.bmp"));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray bmp = saved.readAll();
    const QByteArray dib = bmp.mid(14); // without the header of a file
    const QByteArray frame(8, '\x8');
    const QByteArray metafile = QByteArray(18, '\0') +
                                number(static_cast<quint32>(dib.size() + 24) / 2) + "\x33\x0d" +
                                QByteArray(18, '\0') + dib;
    const QByteArray drawing = QByteArray(18, '\0') + QByteArray::fromHex("030000000000");
    struct Case {
        const char* what;
        QByteArray stream;
        bool shows;
        bool stored; ///< beside the data is a picture that can be saved
    };
    const Case cases[] = {
        {"picture file", stream(bmp, "", ""), true, false},
        {"picture without a file's header", stream(dib, "", ""), true, false},
        {"metafile beside the data", stream("D", "METAFILEPICT", frame + metafile), true, true},
        {"bitmap beside the data", stream("D", "DIB", dib), true, true},
        {"bitmap beside a damaged picture", stream("BM", "DIB", dib), true, true},
        {"metafile of a link", stream("", "METAFILEPICT", frame + metafile), true, true},
        {"lines only", stream("D", "METAFILEPICT", frame + drawing), false, true},
        {"damaged", stream("D", "DIB", "(\0\0\0"), false, false},
        {"cut off", stream("D", "DIB", dib).chopped(1), false, false},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        RichTextBox box;
        box.resize(300, 200);
        box.setTextRTF(
            QString::fromLatin1("{\\rtf1{\\object\\objemb{\\*\\objclass PBrush}{\\*\\objdata " +
                                each.stream.toHex() + "}}}"));
        ASSERT_EQ(box.objects().count(), 1);
        EXPECT_EQ(greenDots(box) > 0, each.shows);
        for (int i = 0; i < 10; ++i) {
            box.setTextRTF(box.TextRTF());
        }
        EXPECT_EQ(rtf::objectOf(box.TextRTF().toLatin1()).data, each.stream);
        EXPECT_EQ(box.objects().picture(0).has_value(), each.stored);
    }
}

TEST_F(Attachments, AFileThatCannotBeEmbeddedLeavesTheTextAlone) {
    RichTextBox box;
    box.setText("text");
    const QString before = box.TextRTF();
    box.objects().setLargestFile(10);
    const struct {
        QString path;
        const char* reason;
    } cases[] = {{QString(), "does not exist"},
                 {m_folder.filePath("none.txt"), "does not exist"},
                 {m_folder.path(), "is not a file"},
                 {file("large.txt", QByteArray(11, 'x')), "at most 1 KB"}};
    for (const auto& each : cases) {
        try {
            box.objects().insertFile(each.path, ObjectDisplay::Icon);
            ADD_FAILURE() << each.path.toStdString();
        } catch (const AutomationError& error) {
            EXPECT_TRUE(error.description().contains(each.reason))
                << error.description().toStdString();
        }
    }
    EXPECT_EQ(box.TextRTF(), before);
    box.objects().insertFile(file("fits.txt", QByteArray(10, 'x')), ObjectDisplay::Icon);
    box.undo();
    EXPECT_EQ(box.TextRTF(), before);
}

TEST_F(Attachments, DroppedFilesAreEmbeddedAndPicturesShown) {
    RichTextBox box;
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::green);
    const QString image = m_folder.filePath("p.png");
    ASSERT_TRUE(picture.save(image));
    auto* const mime = new QMimeData; // the clipboard owns it
    mime->setUrls({QUrl::fromLocalFile(file("a.txt", "hello")), QUrl::fromLocalFile(image),
                   QUrl::fromLocalFile(file("b.txt", "bye")),
                   QUrl::fromLocalFile(m_folder.filePath("none"))});
    QApplication::clipboard()->setMimeData(mime);
    box.paste();
    EXPECT_EQ(box.objects().count(), 0); // a drop is over before the first question
    QCoreApplication::processEvents();
    EXPECT_EQ(box.objects().count(), 2);
    EXPECT_EQ(box.objects().name(0), "a.txt");
    EXPECT_EQ(box.objects().file(1)->data, "bye");
    EXPECT_EQ(box.TextRTF().count("\\pngblip"), 3); // the picture, and the icons of the files
}

TEST_F(Attachments, PicturesAreStoredAsPngAndFitThePage) {
    RichTextBox box;
    QImage picture(1200, 300, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QApplication::clipboard()->setImage(picture);
    box.paste();
    EXPECT_EQ(box.objects().count(), 0);
    EXPECT_FALSE(box.isEmpty());
    EXPECT_TRUE(box.TextRTF().contains("{\\pict\\pngblip\\picwgoal9000\\pichgoal2250"));
}

} // namespace
} // namespace yrw
