#include "platform/rtf/Metafile.h"

#include "platform/rtf/ByteReader.h"

namespace yrw::rtf {

namespace {

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
