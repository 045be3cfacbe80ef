#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace yrw::rtf {

enum class PictureKind : quint8 { None, Png, Jpeg, Emf, Wmf, Dib };

/// A picture group taken apart. Sizes are twips, 0 when the group names none.
struct Picture {
    PictureKind kind = PictureKind::None;
    int width = 0;
    int height = 0;
    QByteArray data;
};

/// Takes the first picture out of a group that is one or holds one.
[[nodiscard]] Picture pictureOf(QByteArrayView group);

/// The group of a PNG or JPEG picture shown at a size in twips.
[[nodiscard]] QByteArray pictureGroup(const Picture& picture);

/// The first device-independent bitmap (without a file header) that a Windows metafile paints;
/// empty when it has none. Icons of embedded files are stored that way.
[[nodiscard]] QByteArrayView bitmapInMetafile(QByteArrayView metafile);

} // namespace yrw::rtf
