#pragma once

#include <QByteArrayView>

namespace yrw::rtf {

enum class TokenKind : quint8 {
    GroupStart,
    GroupEnd,
    Word,   ///< a control word, perhaps with a number
    Symbol, ///< a control symbol: backslash and one character
    Hex,    ///< one byte written as \'xx
    Text,   ///< plain bytes; line ends are not part of it
    Binary, ///< the bytes of a \bin run
    End
};

/// One piece of the input. The views point into it.
struct Token {
    TokenKind kind = TokenKind::End;
    bool hasNumber = false;
    int number = 0;           ///< number of a word, value of a hex byte, character of a symbol
    QByteArrayView text = {}; ///< name of a word, bytes of text or of a binary run
    qsizetype begin = 0;      ///< offset of the first byte
    qsizetype end = 0;        ///< offset behind the last one, the blank after a word included
};

/// Cuts RTF into tokens. It never fails: what makes no sense becomes text or is left out.
///
/// The input must outlive the tokenizer.
/// Thread: one at a time.
class Tokenizer {
public:
    explicit Tokenizer(QByteArrayView input) : m_input(input) {}

    [[nodiscard]] Token next();
    [[nodiscard]] qsizetype position() const { return m_at; }
    void setPosition(qsizetype at) { m_at = at; }
    [[nodiscard]] QByteArrayView input() const { return m_input; }
    /// True when a binary run was longer than the input.
    [[nodiscard]] bool overran() const { return m_overran; }

    /// Moves behind the brace that ends the group around the present position, with nested
    /// groups, escapes and binary runs honoured. False when the input ends first.
    bool skipGroup();

private:
    Token control();
    Token word(qsizetype begin);
    Token hex(qsizetype begin);
    Token plain();
    Token binary(qsizetype begin, int count);
    [[nodiscard]] bool atLineEnd() const;

    QByteArrayView m_input;
    qsizetype m_at = 0;
    bool m_overran = false;
};

/// The group at [begin, end) of the input as it can be written back: in 7 bits, braces balanced
/// and binary runs as hex. `closed` tells whether its last brace was there.
[[nodiscard]] QByteArray keepGroup(QByteArrayView input, qsizetype begin, qsizetype end,
                                   bool closed);

/// The bytes of hex digits; everything else between them is ignored, a lone last digit too.
[[nodiscard]] QByteArray bytesOfHex(QByteArrayView digits);

/// Hex digits in lines of 78, each ended by CR LF.
[[nodiscard]] QByteArray hexLines(const QByteArray& bytes);

} // namespace yrw::rtf
