#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/FileName.h"
#include "platform/rtf/Picture.h"

#include <gtest/gtest.h>

#include <random>

namespace yrw::rtf {
namespace {

/// An object group as an older editor stored it: a text file with its picture.
const QByteArray kStored =
    "{\\object\\objemb{\\*\\objclass Package}\\objw1134\\objh850{\\*\\objdata \n"
    "0105000002000000080000005061636b616765000000000000000000c500000002007368656574\r\n"
    "2e74787400433a5c446f63735c73686565742e747874000000030012000000433a5c54454d505c\r\n"
    "73686565742e747874002700000053686565742031372c206f776e207465737420746578742e0d\r\n"
    "0a476174652032206f70656e0d0a1100000043003a005c00540045004d0050005c007300680065\r\n"
    "00650074002e0074007800740009000000730068006500650074002e0074007800740011000000\r\n"
    "43003a005c0044006f00630073005c00730068006500650074002e007400780074000105000005\r\n"
    "0000000d0000004d45544146494c455049435400d007000024faffff4a0000000800d007dc0500\r\n"
    "000100090000032100000000000700000000000400000003010800050000000b02000000000500\r\n"
    "00000c02e0018002070000001b04e001800200000000030000000000\n}{\\result {\\pict\\wmetafile8"
    "\\picw2000\\pich1500\\picwgoal1134\\pichgoal850 \n01000900\n}}}";

TEST(EmbeddedObject, ReadsAStoredPackage) {
    const ObjectGroup group = objectOf(kStored);
    EXPECT_EQ(group.className, "Package");
    EXPECT_EQ(group.width, 1134);
    EXPECT_EQ(group.height, 850);
    EXPECT_TRUE(group.result.startsWith("{\\result {\\pict\\wmetafile8"));
    const auto object = readObject(group.data);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->className, "Package");
    EXPECT_FALSE(object->linked);
    EXPECT_EQ(object->presentation.kind, PictureKind::Wmf);
    EXPECT_EQ(object->presentation.width, 1133);
    EXPECT_EQ(object->presentation.height, 850);
    EXPECT_TRUE(object->presentation.data.startsWith(QByteArray::fromHex("010009000003")));
    const auto file = readPackage(object->native);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->label, "sheet.txt");
    EXPECT_EQ(file->originalPath, "C:\\Docs\\sheet.txt");
    EXPECT_EQ(file->data, "Sheet 17, own test text.\r\nGate 2 open\r\n");
    const Picture picture = pictureOf(kStored);
    EXPECT_EQ(picture.kind, PictureKind::Wmf);
    EXPECT_EQ(picture.width, 1134);
    EXPECT_EQ(picture.data.toHex(), "01000900");
}

TEST(EmbeddedObject, WhatIsWrittenReadsBack) {
    PackagedFile file{
        QString::fromUtf8("Zażółć 日本.pdf"), QString::fromUtf8("/home/ż/日本.pdf"), {}};
    for (int i = 0; i < 1000; ++i) {
        file.data += static_cast<char>(i * 7);
    }
    const QByteArray raw = objectGroup(
        {.className = kPackageClass,
         .width = 500,
         .height = 600,
         .data = writeObject({.className = kPackageClass, .native = writePackage(file)}),
         .result = pictureGroup({PictureKind::Png, 500, 600, "\x89PNG"})});
    const ObjectGroup group = objectOf(raw);
    EXPECT_EQ(group.width, 500);
    const auto object = readObject(group.data);
    ASSERT_TRUE(object);
    const auto read = readPackage(object->native);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->label, file.label);
    EXPECT_EQ(read->originalPath, file.originalPath);
    EXPECT_EQ(read->data, file.data);
    EXPECT_EQ(pictureOf(raw).data, "\x89PNG");
}

TEST(EmbeddedObject, WrongLengthsGiveNothing) {
    const QByteArray stream = objectOf(kStored).data;
    const QByteArray native = readObject(stream)->native;
    const qsizetype needed = 4 + 4 + 4 + 8 + 4 + 4 + 4 + native.size();
    for (qsizetype i = 0; i < stream.size(); ++i) {
        EXPECT_EQ(readObject(QByteArrayView(stream).first(i)).has_value(), i >= needed) << i;
    }
    for (qsizetype i = 0; i < native.size(); ++i) {
        const auto file = readPackage(QByteArrayView(native).first(i));
        EXPECT_TRUE(!file || file->label == "sheet.txt") << i;
    }
    EXPECT_FALSE(readPackage(QByteArray(native).replace(0, 1, "\3"))); // another mark
    std::mt19937 random(3); // NOLINT: the same inputs in each run
    for (int round = 0; round < 20000; ++round) {
        QByteArray damaged = stream;
        for (int i = 0; i < 4; ++i) {
            damaged[static_cast<qsizetype>(random() % 300)] = static_cast<char>(random());
        }
        if (const auto object = readObject(damaged)) {
            const auto file = readPackage(object->native);
            EXPECT_TRUE(!file || file->data.size() <= stream.size());
        }
    }
}

/// A metafile record: its size in words, its function, its parameters.
QByteArray record(quint16 function, const QByteArray& parameters) {
    QByteArray bytes;
    const auto put = [&bytes](quint32 value, int size) {
        for (int i = 0; i < size; ++i) {
            bytes += static_cast<char>(value >> (8 * i));
        }
    };
    put(static_cast<quint32>(parameters.size() + 6) / 2, 4);
    put(function, 2);
    return bytes + parameters;
}

TEST(EmbeddedObject, AMetafileGivesTheBitmapThatItPaints) {
    const QByteArray bitmap = QByteArray("\x28\0\0\0", 4) + QByteArray(40, 'b');
    const QByteArray header(18, '\0');
    const QByteArray placeable = QByteArray("\xD7\xCD\xC6\x9A", 4) + QByteArray(18, '\0');
    const QByteArray other = record(0x0301, QByteArray(2, 'x'));
    const QByteArray stretch = record(0x0F43, QByteArray(22, 'p') + bitmap);
    const QByteArray second = header + other + stretch;
    const QByteArray first = placeable + header + stretch;
    const QByteArray none = header + other;
    EXPECT_EQ(bitmapInMetafile(second), bitmap);
    EXPECT_EQ(bitmapInMetafile(first), bitmap);
    EXPECT_TRUE(bitmapInMetafile(none).isEmpty());
    const QByteArray endless = header + record(0, {}).replace(0, 4, QByteArray(4, '\0'));
    EXPECT_TRUE(bitmapInMetafile(endless).isEmpty());
}

TEST(EmbeddedObject, ANameIsCleanWhereverItGoes) {
    const std::u16string letters(300, u'\u017C'); // two bytes each
    struct Case {
        std::u16string path;
        std::u16string name;
    };
    const Case cases[] = {
        {u"C:\\a\\b.txt", u"b.txt"},
        {u"/etc/passwd", u"passwd"},
        {u"../../.bashrc", u"bashrc"},
        {u"", u"file"},
        {u"..", u"file"},
        {u". . ", u"file"},
        {u"folder/", u"file"},
        {u"a:b\nc?.txt", u"abc.txt"},
        {u"sales : 5 * 3 | 2.txt", u"sales 5 3 2.txt"},
        {u"x\u202Etxt.exe", u"xtxt.exe"},
        {u"x\u2066y\u200B\u061C.pdf", u"xy.pdf"},
        {u"a\u0085b\x1b[31m.txt\x7f", u"ab[31m.txt"},
        {u"a\u2028b\u2029c", u"abc"},
        {std::u16string(u"nul\0.txt", 8), u"_nul.txt"},
        {u"half\xD800.txt", u"half.txt"},
        {u"tag\U000E0041.txt", u"tag.txt"},
        {u"smile\U0001F600.txt", u"smile\U0001F600.txt"},
        {u"report.pdf            \u00A0\u3164  .exe", u"report.pdf .exe"},
        {u"setup.exe. ", u"setup.exe"},
        {u"CON", u"_CON"},
        {u"aux.tar.gz", u"_aux.tar.gz"},
        {u"com\u00B9.txt", u"_com\u00B9.txt"},
        {u"contract.txt", u"contract.txt"},
        {letters + u".txt", std::u16string(125, u'\u017C') + u".txt"},
        {u"a" + letters, u"a" + std::u16string(127, u'\u017C')},
        {std::u16string(250, u'a') + u"\U0001F600.txt", std::u16string(250, u'a') + u".txt"},
        {u"con" + std::u16string(252, u' ') + u".txt", u"_con .txt"},
        {u"con." + std::u16string(249, u'a') + u".b", u"_con." + std::u16string(249, u'a')},
    };
    for (const Case& c : cases) {
        const QString name = baseName(QString::fromStdU16String(c.path));
        EXPECT_EQ(name, QString::fromStdU16String(c.name)) << name.toStdString();
        EXPECT_EQ(baseName(name), name);
        EXPECT_LE(name.toUtf8().size(), 255);
    }
    EXPECT_EQ(shownText(QStringLiteral(u"C:\\a\n\u202Etxt.exe")), QStringLiteral(u"C:\\atxt.exe"));
}

} // namespace
} // namespace yrw::rtf
