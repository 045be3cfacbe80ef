#include "platform/rtf/Picture.h"

#include "platform/rtf/ByteReader.h"
#include "platform/rtf/Tokenizer.h"

#include <QString>

#include <algorithm>

namespace yrw::rtf {

namespace {

constexpr int kLargest = 31680; ///< twips

struct Reading {
    Picture picture;
    int scaleX = 100;
    int scaleY = 100;
    int pixelWidth = 0;
    int pixelHeight = 0;
};

void word(Reading& reading, const Token& token) {
    Picture& picture = reading.picture;
    if (token.text == "pngblip") {
        picture.kind = PictureKind::Png;
    } else if (token.text == "jpegblip") {
        picture.kind = PictureKind::Jpeg;
    } else if (token.text == "emfblip") {
        picture.kind = PictureKind::Emf;
    } else if (token.text == "wmetafile") {
        picture.kind = PictureKind::Wmf;
    } else if (token.text == "dibitmap") {
        picture.kind = PictureKind::Dib;
    } else if (token.text == "picwgoal") {
        picture.width = std::clamp(token.number, 0, kLargest);
    } else if (token.text == "pichgoal") {
        picture.height = std::clamp(token.number, 0, kLargest);
    } else if (token.text == "picscalex") {
        reading.scaleX = std::clamp(token.number, 1, 1000);
    } else if (token.text == "picscaley") {
        reading.scaleY = std::clamp(token.number, 1, 1000);
    }
}

constexpr quint32 kPlaceable = 0x9AC6CDD7;
constexpr qsizetype kPlaceableHeader = 22;
constexpr qsizetype kHeader = 18;
constexpr qsizetype kRecordHeader = 6;
constexpr qsizetype kBitmapHeader = 40;

/// Where a record's bitmap begins behind its own header, or 0 for a record without one.
qsizetype bitmapOffset(quint16 function) {
    switch (function) {
    case 0x0F43: // StretchDIBits
        return 22;
    case 0x0D33: // SetDIBitsToDevice
        return 18;
    case 0x0B41: // DibStretchBlt
        return 20;
    case 0x0940: // DibBitBlt
        return 16;
    default:
        return 0;
    }
}

} // namespace

Picture pictureOf(QByteArrayView group) {
    Reading reading;
    QByteArray digits;
    Tokenizer tokens(group);
    int depth = 0;
    int pictureDepth = 0;
    for (Token token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        if (token.kind == TokenKind::GroupStart) {
            ++depth;
        } else if (token.kind == TokenKind::GroupEnd) {
            if (pictureDepth > 0 && depth == pictureDepth) {
                break;
            }
            --depth;
        } else if (token.kind == TokenKind::Word && token.text == "pict" && pictureDepth == 0) {
            pictureDepth = depth;
        } else if (pictureDepth > 0 && depth == pictureDepth) {
            if (token.kind == TokenKind::Word) {
                word(reading, token);
            } else if (token.kind == TokenKind::Text) {
                digits += token.text;
            } else if (token.kind == TokenKind::Binary) {
                reading.picture.data += token.text;
            }
        }
    }
    Picture& picture = reading.picture;
    if (picture.data.isEmpty()) {
        picture.data = bytesOfHex(digits);
    }
    picture.width = picture.width * reading.scaleX / 100;
    picture.height = picture.height * reading.scaleY / 100;
    return std::move(picture);
}

QByteArray pictureGroup(const Picture& picture) {
    return "{\\pict\\" + QByteArray(picture.kind == PictureKind::Jpeg ? "jpegblip" : "pngblip") +
           "\\picwgoal" + QByteArray::number(picture.width) + "\\pichgoal" +
           QByteArray::number(picture.height) + "\r\n" + hexLines(picture.data) + "}";
}

QByteArrayView bitmapInMetafile(QByteArrayView metafile) {
    const bool placeable = ByteReader(metafile).u32() == kPlaceable;
    ByteReader reader(metafile);
    reader.take(kHeader + (placeable ? kPlaceableHeader : 0));
    while (!reader.failed() && reader.left() >= kRecordHeader) {
        const qint64 size = static_cast<qint64>(reader.u32()) * 2;
        const quint16 function = reader.u16();
        if (size < kRecordHeader) {
            break;
        }
        const QByteArrayView parameters = reader.take(size - kRecordHeader);
        const qsizetype offset = bitmapOffset(function);
        if (offset > 0 && parameters.size() > offset + kBitmapHeader) {
            return parameters.sliced(offset);
        }
    }
    return {};
}

} // namespace yrw::rtf
