#pragma once

#include <QByteArrayView>

namespace yrw::rtf {

/// The first device-independent bitmap (without a file header) that a Windows metafile paints;
/// empty when it has none. Icons of embedded files are stored that way.
[[nodiscard]] QByteArrayView bitmapInMetafile(QByteArrayView metafile);

} // namespace yrw::rtf
