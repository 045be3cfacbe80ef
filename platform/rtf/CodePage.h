#pragma once

#include <QByteArrayView>
#include <QString>

namespace yrw::rtf {

/// The code page that stands for the symbol character set: a byte xx is U+F0xx.
inline constexpr int kSymbolCodePage = 42;

/// Code page of a font's character set number; 0 when the number names none.
[[nodiscard]] int codePageOfCharset(int charset);

/// Turns bytes of a code page into text. A byte that means nothing there becomes U+FFFD; an
/// unknown code page is read as 1252.
[[nodiscard]] QString decode(int codePage, QByteArrayView bytes);

/// The character of a byte in code page 1252; a byte that means nothing there is itself.
[[nodiscard]] char16_t characterOf1252(unsigned char byte);
/// The byte of a character in code page 1252, or 0 when it has none there.
[[nodiscard]] unsigned char byteOf1252(char16_t character);

} // namespace yrw::rtf
