#include "platform/rtf/EmbeddedObject.h"

#include "platform/rtf/ByteReader.h"
#include "platform/rtf/CodePage.h"
#include "platform/rtf/FileName.h"
#include "platform/rtf/Tokenizer.h"

#include <algorithm>
#include <cmath>

namespace yrw::rtf {

namespace {

constexpr quint32 kVersion = 0x501;
constexpr quint32 kLinked = 1;
constexpr quint32 kEmbedded = 2;
constexpr quint32 kPresentation = 5;
constexpr quint16 kStreamMark = 2;
constexpr quint16 kLinkedFile = 1;
constexpr quint16 kEmbeddedFile = 3;
constexpr int kLargest = 31680; ///< twips

void put16(QByteArray& bytes, quint16 value) {
    const quint16 stored = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&stored), sizeof stored);
}

void put32(QByteArray& bytes, quint32 value) {
    const quint32 stored = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&stored), sizeof stored);
}

void putCounted(QByteArray& bytes, const QByteArray& text) {
    put32(bytes, text.isEmpty() ? 0 : static_cast<quint32>(text.size() + 1));
    if (!text.isEmpty()) {
        bytes += text;
        bytes += '\0';
    }
}

void putText(QByteArray& bytes, const QString& text) {
    for (const QChar c : text) {
        const unsigned char byte = byteOf1252(c.unicode());
        bytes += static_cast<char>(byte != 0 ? byte : '_');
    }
    bytes += '\0';
}

void putWide(QByteArray& bytes, const QString& text) {
    put32(bytes, static_cast<quint32>(text.size()));
    for (const QChar c : text) {
        put16(bytes, c.unicode());
    }
}

/// One of the counted UTF-16 texts behind the file; nothing when it is not there.
std::optional<QString> wide(ByteReader& reader) {
    const QByteArrayView bytes = reader.take(static_cast<qint64>(reader.u32()) * 2);
    if (reader.failed()) {
        return std::nullopt;
    }
    QString text;
    text.reserve(bytes.size() / 2);
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
        text += QChar(qFromLittleEndian<quint16>(bytes.data() + i));
    }
    return text;
}

/// Twips of hundredths of a millimetre, which may count downwards.
int twips(quint32 himetric) {
    constexpr double kHimetricPerInch = 2540;
    constexpr double kTwipsPerInch = 1440;
    const double length = std::abs(static_cast<double>(static_cast<qint32>(himetric)));
    return static_cast<int>(std::min<double>(kLargest, length * kTwipsPerInch / kHimetricPerInch));
}

/// The picture behind an object's data; none where there is none or a length does not fit.
Picture presentation(ByteReader& reader) {
    constexpr qsizetype kMetafileFrame = 8; // mapping and size once more
    reader.u32();
    if (reader.u32() != kPresentation) {
        return {};
    }
    const QByteArrayView type = reader.countedText();
    Picture picture;
    picture.width = twips(reader.u32());
    picture.height = twips(reader.u32());
    QByteArrayView data = reader.take(reader.u32());
    if (reader.failed()) {
        return {};
    }
    if (type == "METAFILEPICT" && data.size() > kMetafileFrame) {
        picture.kind = PictureKind::Wmf;
        data = data.sliced(kMetafileFrame);
    } else if (type == "DIB") {
        picture.kind = PictureKind::Dib;
    } else {
        return {};
    }
    picture.data = data.toByteArray();
    return picture;
}

} // namespace

std::optional<EmbeddedObject> readObject(QByteArrayView stream) {
    ByteReader reader(stream);
    EmbeddedObject object;
    reader.u32(); // the version differs between writers and changes nothing
    const quint32 kind = reader.u32();
    if (reader.failed() || (kind != kLinked && kind != kEmbedded)) {
        return std::nullopt;
    }
    object.linked = kind == kLinked;
    object.className = reader.countedText().toByteArray();
    object.topic = reader.countedText().toByteArray();
    object.item = reader.countedText().toByteArray();
    if (!object.linked) {
        object.native = reader.take(reader.u32()).toByteArray();
    }
    if (reader.failed()) {
        return std::nullopt;
    }
    if (object.linked) {
        reader.countedText(); // the network's name of the file
        reader.take(8);       // how the link is kept up to date
    }
    object.presentation = presentation(reader);
    return object;
}

QByteArray writeObject(const EmbeddedObject& object) {
    QByteArray bytes;
    bytes.reserve(object.native.size() + 128);
    put32(bytes, kVersion);
    put32(bytes, kEmbedded);
    putCounted(bytes, object.className);
    putCounted(bytes, object.topic);
    putCounted(bytes, object.item);
    put32(bytes, static_cast<quint32>(object.native.size()));
    bytes += object.native;
    put32(bytes, kVersion);
    put32(bytes, 0);
    return bytes;
}

std::optional<PackagedFile> readPackage(QByteArrayView native) {
    ByteReader reader(native);
    PackagedFile file;
    const quint16 mark = reader.u16();
    const QString label = decode(1252, reader.text());
    const QString path = decode(1252, reader.text());
    reader.u16();
    const quint16 kind = reader.u16();
    reader.countedText(); // the temporary path
    const QByteArrayView data = reader.take(reader.u32());
    if (reader.failed() || mark != kStreamMark || kind != kEmbeddedFile) {
        return std::nullopt;
    }
    file.data = data.toByteArray();
    wide(reader); // the temporary path again
    const auto wideLabel = wide(reader);
    const auto widePath = wide(reader);
    file.label = baseName(wideLabel && !wideLabel->isEmpty() ? *wideLabel : label);
    file.originalPath = widePath && !widePath->isEmpty() ? *widePath : path;
    return file;
}

QString linkOf(const EmbeddedObject& object) {
    if (object.linked) {
        return decode(1252, object.topic);
    }
    ByteReader reader(object.native);
    const quint16 mark = reader.u16();
    reader.text(); // the label
    const QString path = decode(1252, reader.text());
    reader.u16();
    const quint16 kind = reader.u16();
    const bool link = object.className == kPackageClass && !reader.failed() &&
                      mark == kStreamMark && kind == kLinkedFile;
    return link ? path : QString();
}

QByteArray writePackage(const PackagedFile& file) {
    QByteArray bytes;
    bytes.reserve(file.data.size() + 512);
    put16(bytes, kStreamMark);
    putText(bytes, file.label);
    putText(bytes, file.originalPath);
    put16(bytes, 0);
    put16(bytes, kEmbeddedFile);
    QByteArray temporary;
    putText(temporary, file.label);
    put32(bytes, static_cast<quint32>(temporary.size()));
    bytes += temporary;
    put32(bytes, static_cast<quint32>(file.data.size()));
    bytes += file.data;
    putWide(bytes, file.label);
    putWide(bytes, file.label);
    putWide(bytes, file.originalPath);
    return bytes;
}

ObjectGroup objectOf(QByteArrayView group) {
    ObjectGroup object;
    Tokenizer tokens(group);
    qsizetype begin = 0;
    for (Token token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        if (token.kind == TokenKind::GroupStart) {
            begin = token.begin;
        } else if (token.kind != TokenKind::Word) {
            continue;
        } else if (token.text == "objw") {
            object.width = std::clamp(token.number, 0, kLargest);
        } else if (token.text == "objh") {
            object.height = std::clamp(token.number, 0, kLargest);
        } else if (token.text == "objclass") {
            object.className = tokens.next().text.trimmed().toByteArray();
        } else if (token.text == "objdata") {
            QByteArray digits;
            Token part = tokens.next();
            for (; part.kind == TokenKind::Text || part.kind == TokenKind::Binary;
                 part = tokens.next()) {
                if (part.kind == TokenKind::Text) {
                    digits += part.text;
                } else {
                    digits += part.text.toByteArray().toHex();
                }
            }
            object.data = bytesOfHex(digits);
        } else if (token.text == "result") {
            const bool closed = tokens.skipGroup();
            object.result = keepGroup(group, begin, tokens.position(), closed);
        }
    }
    return object;
}

QByteArray objectGroup(const ObjectGroup& object) {
    return "{\\object\\objemb\\objw" + QByteArray::number(object.width) + "\\objh" +
           QByteArray::number(object.height) + "{\\*\\objclass " + object.className +
           "}{\\*\\objdata\r\n" + hexLines(object.data) + "}{\\result " + object.result + "}}";
}

} // namespace yrw::rtf
