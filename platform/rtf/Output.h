#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <utility>

namespace yrw::rtf {

/// Bytes of RTF under construction. Knows whether the last thing written was a control word, which
/// a following character must be kept apart from by one blank.
/// Thread: one at a time.
class Output {
public:
    void reserve(qsizetype size) { m_bytes.reserve(size); }
    void word(const char* name);
    void word(const char* name, int number);
    /// Bytes that begin with a brace, a backslash or a line end.
    void raw(QByteArrayView bytes);
    /// Text; `bytes1252` tells whether characters of code page 1252 may be written as one byte,
    /// `symbols` whether U+F0xx is one byte of a symbol font.
    void text(QStringView characters, bool bytes1252, bool symbols);
    /// Ends an open control word with its blank.
    void closeWord();
    [[nodiscard]] QByteArray take() { return std::move(m_bytes); }

private:
    void special(char16_t c, bool bytes1252, bool symbols);
    void number(char16_t c);
    void hex(unsigned char byte);

    QByteArray m_bytes;
    bool m_wordOpen = false;
};

} // namespace yrw::rtf
