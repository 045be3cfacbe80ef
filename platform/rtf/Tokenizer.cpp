#include "platform/rtf/Tokenizer.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <limits>

namespace yrw::rtf {

namespace {

constexpr bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexDigit(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Ends a run of text: group, control, line end or a stray NUL.
constexpr bool endsText(char c) {
    return c == '{' || c == '}' || c == '\\' || c == '\r' || c == '\n' || c == '\0';
}

/// Appends bytes of a group in 7 bits: others as their number, NUL not at all.
void keepBytes(QByteArray& kept, QByteArrayView bytes) {
    for (const char c : bytes) {
        if (c >= 0) {
            // A NUL ends a control word and is no text: so is and does a line end.
            kept += c == '\0' ? '\n' : c;
        } else {
            kept += "\\'" + QByteArray::number(static_cast<unsigned char>(c), 16);
        }
    }
}

constexpr qint64 kLargest = std::numeric_limits<int>::max();
constexpr qint64 kSmallest = std::numeric_limits<int>::min();

} // namespace

bool Tokenizer::atLineEnd() const {
    const char c = m_input[m_at];
    return c == '\r' || c == '\n' || c == '\0';
}

Token Tokenizer::next() {
    while (m_at < m_input.size() && atLineEnd()) {
        ++m_at;
    }
    if (m_at >= m_input.size()) {
        return Token{.begin = m_at, .end = m_at};
    }
    const char c = m_input[m_at];
    if (c == '{' || c == '}') {
        ++m_at;
        return Token{.kind = c == '{' ? TokenKind::GroupStart : TokenKind::GroupEnd,
                     .begin = m_at - 1,
                     .end = m_at};
    }
    return c == '\\' ? control() : plain();
}

Token Tokenizer::plain() {
    const qsizetype begin = m_at;
    while (m_at < m_input.size() && !endsText(m_input[m_at])) {
        ++m_at;
    }
    return Token{.kind = TokenKind::Text,
                 .text = m_input.sliced(begin, m_at - begin),
                 .begin = begin,
                 .end = m_at};
}

Token Tokenizer::control() {
    const qsizetype begin = m_at++;
    if (m_at >= m_input.size()) {
        return Token{.begin = m_at, .end = m_at};
    }
    const char c = m_input[m_at];
    if (isLetter(c)) {
        return word(begin);
    }
    ++m_at;
    if (c == '\'') {
        return hex(begin);
    }
    return Token{.kind = TokenKind::Symbol,
                 .number = static_cast<unsigned char>(c),
                 .text = m_input.sliced(begin, m_at - begin),
                 .begin = begin,
                 .end = m_at};
}

Token Tokenizer::hex(qsizetype begin) {
    int value = 0;
    int digits = 0;
    while (digits < 2 && m_at < m_input.size() && hexDigit(m_input[m_at]) >= 0) {
        value = value * 16 + hexDigit(m_input[m_at++]);
        ++digits;
    }
    return Token{.kind = TokenKind::Hex,
                 .hasNumber = digits > 0,
                 .number = value,
                 .begin = begin,
                 .end = m_at};
}

Token Tokenizer::word(qsizetype begin) {
    const qsizetype nameBegin = m_at;
    while (m_at < m_input.size() && isLetter(m_input[m_at])) {
        ++m_at;
    }
    Token token{.kind = TokenKind::Word,
                .text = m_input.sliced(nameBegin, m_at - nameBegin),
                .begin = begin};
    const bool negative =
        m_at + 1 < m_input.size() && m_input[m_at] == '-' && isDigit(m_input[m_at + 1]);
    m_at += negative ? 1 : 0;
    qint64 number = 0;
    for (; m_at < m_input.size() && isDigit(m_input[m_at]); ++m_at) {
        number = std::min(number * 10 + (m_input[m_at] - '0'), kLargest + 1);
        token.hasNumber = true;
    }
    token.number = static_cast<int>(std::clamp(negative ? -number : number, kSmallest, kLargest));
    if (m_at < m_input.size() && m_input[m_at] == ' ') {
        ++m_at;
    }
    token.end = m_at;
    if (token.text == "bin" && token.number > 0) {
        return binary(begin, token.number);
    }
    return token;
}

Token Tokenizer::binary(qsizetype begin, int count) {
    const qsizetype left = m_input.size() - m_at;
    m_overran = m_overran || count > left;
    const qsizetype size = std::min<qsizetype>(count, left);
    const QByteArrayView bytes = m_input.sliced(m_at, size);
    m_at += size;
    return Token{.kind = TokenKind::Binary, .text = bytes, .begin = begin, .end = m_at};
}

bool Tokenizer::skipGroup() {
    for (qsizetype depth = 1; depth > 0;) {
        const Token token = next();
        if (token.kind == TokenKind::End) {
            return false;
        }
        if (token.kind == TokenKind::GroupStart) {
            ++depth;
        } else if (token.kind == TokenKind::GroupEnd) {
            --depth;
        }
    }
    return true;
}

QByteArray keepGroup(QByteArrayView input, qsizetype begin, qsizetype end, bool closed) {
    const QByteArrayView group = input.sliced(begin, end - begin);
    const bool ascii = std::all_of(group.begin(), group.end(), [](char c) { return c > 0; });
    if (closed && ascii && group.indexOf("\\bin") < 0) {
        return group.toByteArray();
    }
    QByteArray kept;
    Tokenizer tokens(group);
    qsizetype depth = 0;
    qsizetype copied = 0;
    for (Token token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        depth += token.kind == TokenKind::GroupStart ? 1 : 0;
        depth -= token.kind == TokenKind::GroupEnd ? 1 : 0;
        if (token.kind == TokenKind::Binary) {
            keepBytes(kept, group.sliced(copied, token.begin - copied));
            kept += ' ' + token.text.toByteArray().toHex();
            copied = token.end;
        } else if (token.kind == TokenKind::Symbol && (token.number == 0 || token.number > 0x7F)) {
            // No symbol of RTF: its character is not kept as it is, and without it the backslash
            // would stand before whatever follows. A line end is left, which parts words too.
            keepBytes(kept, group.sliced(copied, token.begin - copied));
            kept += '\n';
            copied = token.end;
        }
    }
    // A lone backslash or half an escape at the cut must not swallow the brace that is added.
    qsizetype rest = group.size();
    while (!closed && rest > copied && group[rest - 1] == '\\') {
        --rest;
    }
    keepBytes(kept, group.sliced(copied, rest - copied));
    kept.append(std::max<qsizetype>(depth, 0), '}');
    return kept;
}

QByteArray bytesOfHex(QByteArrayView digits) {
    QByteArray bytes;
    bytes.reserve(digits.size() / 2);
    int high = -1;
    for (const char c : digits) {
        const int digit = hexDigit(c);
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
    constexpr qsizetype kLine = 78;
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
