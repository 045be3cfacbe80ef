#include "platform/rtf/Output.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/Model.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace yrw::rtf {

namespace {

constexpr bool isPlain(QChar character) {
    const char16_t c = character.unicode();
    return c >= 0x20 && c < 0x7F && c != u'\\' && c != u'{' && c != u'}';
}

} // namespace

void Output::word(const char* name) {
    m_bytes += '\\';
    m_bytes += name;
    m_wordOpen = true;
}

void Output::word(const char* name, int number) {
    word(name);
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    m_bytes.append(digits.data(), end - digits.data());
}

void Output::raw(QByteArrayView bytes) {
    m_bytes += bytes;
    m_wordOpen = false;
}

void Output::closeWord() {
    if (m_wordOpen) {
        m_bytes += ' ';
        m_wordOpen = false;
    }
}

void Output::text(QStringView characters, bool bytes1252, bool symbols) {
    const QChar* at = characters.begin();
    while (at != characters.end()) {
        const QChar* const end = symbols ? at : std::find_if_not(at, characters.end(), isPlain);
        if (end != at) {
            closeWord();
            const qsizetype size = m_bytes.size();
            m_bytes.resize(size + (end - at));
            std::transform(at, end, m_bytes.data() + size,
                           [](QChar c) { return static_cast<char>(c.unicode()); });
        }
        at = end;
        for (; at != characters.end() && (symbols || !isPlain(*at)); ++at) {
            special(at->unicode(), bytes1252, symbols);
        }
    }
}

void Output::special(char16_t c, bool bytes1252, bool symbols) {
    if (symbols && c >= 0x20) {
        // A byte would be read as a symbol.
        if (c >= 0xF020 && c <= 0xF0FF) {
            hex(static_cast<unsigned char>(c - 0xF000));
        } else {
            number(c);
        }
        return;
    }
    switch (c) {
    case u'\\':
    case u'{':
    case u'}':
        m_bytes += '\\';
        m_bytes += static_cast<char>(c);
        m_wordOpen = false;
        return;
    case u'\t':
        word("tab");
        return;
    case kLineBreak:
        word("line");
        return;
    case 0xA0:
        raw("\\~");
        return;
    case 0xAD:
        raw("\\-");
        return;
    case 0x2011:
        raw("\\_");
        return;
    default:
        break;
    }
    if (c < 0x80) {
        hex(static_cast<unsigned char>(c));
    } else if (const unsigned char byte = bytes1252 ? byteOf1252(c) : 0; byte != 0) {
        hex(byte);
    } else {
        number(c);
    }
}

void Output::number(char16_t c) {
    word("u", static_cast<qint16>(c));
    raw("?");
}

void Output::hex(unsigned char byte) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const char escaped[] = {'\\', '\'', kDigits[byte >> 4], kDigits[byte & 0xF]};
    raw(QByteArrayView(escaped, sizeof escaped));
}

} // namespace yrw::rtf
