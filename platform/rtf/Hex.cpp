#include "platform/rtf/Hex.h"

#include <algorithm>

namespace yrw::rtf {

namespace {

constexpr qsizetype kLine = 78;

int digitOf(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

QByteArray bytesOfHex(QByteArrayView digits) {
    QByteArray bytes;
    bytes.reserve(digits.size() / 2);
    int high = -1;
    for (const char c : digits) {
        const int digit = digitOf(c);
        if (digit < 0) {
            continue;
        }
        if (high < 0) {
            high = digit;
        } else {
            bytes += static_cast<char>(high * 16 + digit);
            high = -1;
        }
    }
    return bytes;
}

QByteArray hexLines(const QByteArray& bytes) {
    const QByteArray digits = bytes.toHex();
    QByteArray lines;
    lines.reserve(digits.size() + digits.size() / kLine * 2 + 2);
    for (qsizetype i = 0; i < digits.size(); i += kLine) {
        lines += QByteArrayView(digits).sliced(i, std::min(kLine, digits.size() - i));
        lines += "\r\n";
    }
    return lines;
}

} // namespace yrw::rtf
