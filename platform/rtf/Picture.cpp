#include "platform/rtf/Picture.h"

#include "platform/rtf/Hex.h"
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

} // namespace yrw::rtf
