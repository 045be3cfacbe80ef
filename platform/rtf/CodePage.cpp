#include "platform/rtf/CodePage.h"

#include <QByteArray>

#include <iconv.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>

namespace yrw::rtf {

namespace {

struct CharsetPage {
    int charset;
    int codePage;
};

constexpr std::array<CharsetPage, 20> kCharsetPages = {
    {{0, 1252},   {2, kSymbolCodePage}, {77, 10000}, {78, 932},   {128, 932},
     {129, 949},  {130, 1361},          {134, 936},  {136, 950},  {161, 1253},
     {162, 1254}, {163, 1258},          {177, 1255}, {178, 1256}, {186, 1257},
     {204, 1251}, {222, 874},           {238, 1250}, {254, 437},  {255, 850}}};

/// What 0x80 to 0x9F mean in code page 1252; 0: nothing.
constexpr std::array<char16_t, 32> kHigh1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

struct CloseIconv {
    void operator()(void* handle) const { iconv_close(handle); }
};
using IconvHandle = std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseIconv>;

QByteArray iconvName(int codePage) {
    switch (codePage) {
    case 10000:
        return "MACINTOSH";
    case 1361:
        return "JOHAB";
    case 65001:
        return "UTF-8";
    case 949:
        return "UHC";
    default:
        return "CP" + QByteArray::number(codePage);
    }
}

/// True when the letters and digits of ASCII mean themselves; rich text itself is written in them,
/// so a page of mainframes that has others in their place cannot be its own.
bool keepsAscii(iconv_t handle) {
    QByteArray letters("AZaz09");
    std::array<char16_t, 6> decoded{};
    char* from = letters.data();
    auto fromLeft = static_cast<std::size_t>(letters.size());
    char* to = reinterpret_cast<char*>(decoded.data());
    std::size_t toLeft = sizeof decoded;
    iconv(handle, &from, &fromLeft, &to, &toLeft);
    return fromLeft == 0 && std::equal(decoded.begin(), decoded.end(), u"AZaz09");
}

/// Converters are kept: opening one loads a table.
iconv_t converter(int codePage) {
    static thread_local std::map<int, IconvHandle> open;
    const auto found = open.find(codePage);
    if (found != open.end()) {
        return found->second.get();
    }
    iconv_t handle = iconv_open("UTF-16LE", iconvName(codePage).constData());
    if (handle == reinterpret_cast<iconv_t>(-1)) { // NOLINT: iconv's own failure value
        handle = nullptr;
    } else if (!keepsAscii(handle)) {
        iconv_close(handle);
        handle = nullptr;
    }
    open[codePage] = IconvHandle(handle);
    return handle;
}

QString decode1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char c) { return QChar(characterOf1252(static_cast<unsigned char>(c))); });
    return text;
}

QString decodeSymbols(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += QChar(static_cast<char16_t>(byte < 0x20 ? byte : 0xF000 + byte));
    }
    return text;
}

} // namespace

int codePageOfCharset(int charset) {
    const auto* const found =
        std::find_if(kCharsetPages.begin(), kCharsetPages.end(),
                     [charset](const CharsetPage& entry) { return entry.charset == charset; });
    return found == kCharsetPages.end() ? 0 : found->codePage;
}

QString decode(int codePage, QByteArrayView bytes) {
    if (codePage == kSymbolCodePage) {
        return decodeSymbols(bytes);
    }
    iconv_t const handle = codePage == 1252 || codePage <= 0 ? nullptr : converter(codePage);
    if (handle == nullptr) {
        return decode1252(bytes);
    }
    QString text(bytes.size(), Qt::Uninitialized);
    iconv(handle, nullptr, nullptr, nullptr, nullptr);
    char* from = const_cast<char*>(bytes.data()); // NOLINT: iconv does not write to its input
    std::size_t fromLeft = static_cast<std::size_t>(bytes.size());
    char* to = reinterpret_cast<char*>(text.data());
    std::size_t toLeft = static_cast<std::size_t>(text.size()) * 2;
    while (fromLeft > 0 && toLeft >= 2) {
        if (iconv(handle, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1)) {
            break;
        }
        if (fromLeft == 0 || toLeft < 2) {
            break;
        }
        const char16_t unknown = QChar::ReplacementCharacter;
        to = std::copy_n(reinterpret_cast<const char*>(&unknown), 2, to);
        toLeft -= 2;
        ++from;
        --fromLeft;
    }
    iconv(handle, nullptr, nullptr, &to, &toLeft); // what it held back to combine
    text.truncate(text.size() - static_cast<qsizetype>(toLeft / 2));
    return text;
}

char16_t characterOf1252(unsigned char byte) {
    const bool special = byte >= 0x80 && byte <= 0x9F && kHigh1252[byte - 0x80U] != 0;
    return special ? kHigh1252[byte - 0x80U] : char16_t(byte);
}

unsigned char byteOf1252(char16_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        return static_cast<unsigned char>(character);
    }
    const auto* const found = std::find(kHigh1252.begin(), kHigh1252.end(), character);
    return found == kHigh1252.end()
               ? 0
               : static_cast<unsigned char>(0x80 + std::distance(kHigh1252.begin(), found));
}

} // namespace yrw::rtf
