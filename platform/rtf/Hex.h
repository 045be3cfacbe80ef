#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace yrw::rtf {

/// The bytes of hex digits; everything else between them is ignored, a lone last digit too.
[[nodiscard]] QByteArray bytesOfHex(QByteArrayView digits);

/// Hex digits in lines of 78, each ended by CR LF.
[[nodiscard]] QByteArray hexLines(const QByteArray& bytes);

} // namespace yrw::rtf
