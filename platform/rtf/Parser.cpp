#include "platform/rtf/Parser.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/Reader.h"

#include <algorithm>
#include <utility>

namespace yrw::rtf {

namespace {

/// Deeper groups are read with the formats of this depth, so that memory stays bounded.
constexpr std::size_t kDeepest = 1 << 17;

bool isAscii(QByteArrayView bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Characters that have a meaning of their own in the model are not text.
char16_t cleaned(char16_t c) {
    const bool reserved = c == kInlineMark || c == QChar::ParagraphSeparator || c == 0 ||
                          (c >= 0xFDD0 && c <= 0xFDEF);
    return reserved ? char16_t(QChar::ReplacementCharacter) : c;
}

/// Halves of surrogate pairs that stand alone are no characters.
void replaceLoneSurrogates(QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() &&
            text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (text.at(i).isSurrogate()) {
            text[i] = QChar::ReplacementCharacter;
        }
    }
}

} // namespace

Parser::Parser(QByteArrayView input, Document& document)
    : m_tokens(input), m_document(document), m_builder(document) {}

void Parser::run() {
    constexpr qsizetype kMostReserved = 4LL * 1024 * 1024;
    m_document.text.reserve(std::min(m_tokens.input().size(), kMostReserved));
    for (Token token = m_tokens.next(); !m_done; token = m_tokens.next()) {
        switch (token.kind) {
        case TokenKind::GroupStart:
            openGroup(token);
            break;
        case TokenKind::GroupEnd:
            closeGroup(token);
            break;
        case TokenKind::Word:
            word(token);
            break;
        case TokenKind::Symbol:
            symbol(token);
            break;
        case TokenKind::Hex:
        case TokenKind::Text:
            bytes(token);
            break;
        case TokenKind::Binary:
            skipped(token);
            break;
        case TokenKind::End:
            m_document.incomplete = true; // the last brace is missing
            m_done = true;
            break;
        }
    }
    finish();
}

void Parser::finish() {
    flush();
    m_document.incomplete = m_document.incomplete || m_tokens.overran() || m_overflow > 0;
    if (!m_open.empty()) {
        if (!m_builder.paragraphIsEmpty()) {
            endCell(static_cast<int>(m_open.size()));
        }
        endRows(0);
    }
    if (m_document.paragraphs.empty() || !m_builder.paragraphIsEmpty() ||
        m_document.paragraphs.back().row >= 0) {
        m_builder.endParagraph(paragraphFormat(), format());
    }
    if (m_surrogates) {
        replaceLoneSurrogates(m_document.text);
    }
    m_document.codePage = m_documentPage;
    if (m_document.colours.empty()) {
        m_document.colours.push_back(kAutomatic);
    }
}

void Parser::openGroup(const Token& token) {
    flush();
    m_skip = 0;
    m_state.fresh = false;
    if (m_stack.size() >= kDeepest) {
        m_document.incomplete = true;
        ++m_overflow;
        return;
    }
    m_stack.push_back(m_state);
    m_state.begin = token.begin;
    m_state.starred = false;
    m_state.fresh = true;
    m_state.isField = false;
    m_state.ownsField = false;
}

void Parser::closeGroup(const Token& token) {
    flush();
    m_skip = 0;
    if (m_overflow > 0) {
        --m_overflow;
        return;
    }
    if (m_stack.empty()) {
        m_document.incomplete = true; // a brace too many before the document
        return;
    }
    closeDestination();
    const State closed = std::exchange(m_state, m_stack.back());
    m_stack.pop_back();
    if (closed.ownsField && closed.fieldStart == m_document.text.size() && inBody()) {
        // A field that shows nothing would leave no trace: it is kept whole, or without the
        // paragraphs that it ended, which have ended, and binary data, which would be text as hex.
        const QByteArrayView group =
            m_tokens.input().sliced(closed.begin, token.end - closed.begin);
        const bool bare =
            closed.fieldParagraph != m_document.paragraphs.size() || group.indexOf("\\bin") >= 0;
        addInline(InlineKind::Kept,
                  bare ? "{\\field" + m_document.fields.at(size_t(closed.field)).instruction + '}'
                       : keepGroup(m_tokens.input(), closed.begin, token.end, true));
    }
    if (m_stack.empty()) {
        m_state = closed; // the formats at the document's end
        m_done = true;
    }
}

void Parser::closeDestination() {
    const Destination parent = m_stack.empty() ? Destination::Body : m_stack.back().destination;
    if (m_state.destination == Destination::FontTable) {
        closeFont();
        if (parent != Destination::FontTable) {
            ensureDefaultFont();
        }
    } else if (m_state.destination == Destination::Pn && parent != Destination::Pn) {
        ParFormat& pars = m_stack.back().pars;
        pars.list = m_pn.list;
        pars.listStart = m_pn.listStart;
        pars.listBefore = m_pn.list == ListKind::Bullet ? QString() : m_pn.listBefore;
        pars.listAfter = m_pn.list == ListKind::Bullet ? QString() : m_pn.listAfter;
    }
}

bool Parser::skipped(const Token& token) {
    if (m_skip == 0) {
        return false;
    }
    if (token.kind != TokenKind::Text) {
        --m_skip;
        return true;
    }
    const int items = static_cast<int>(std::min<qsizetype>(m_skip, token.text.size()));
    m_skip -= items;
    append(token.text.sliced(items));
    return true;
}

void Parser::word(const Token& token) {
    if (skipped(token)) {
        return;
    }
    flush();
    const bool fresh = std::exchange(m_state.fresh, false);
    const WordEntry entry = findWord(token.text);
    if (entry.handler != nullptr) {
        m_state.fresh = fresh;
        (this->*entry.handler)(token, entry.value);
        m_state.fresh = false;
    } else if (fresh && m_state.starred) {
        m_state.fresh = true;
        keepHere(token, 0);
    }
}

void Parser::symbol(const Token& token) {
    if (token.number == '*' && m_state.fresh) {
        m_state.starred = true;
        return;
    }
    if (skipped(token)) {
        return;
    }
    m_state.fresh = false;
    switch (token.number) {
    case '\\':
    case '{':
    case '}':
        append(token.text.last(1));
        break;
    case '~':
        appendCharacter(QChar::Nbsp);
        break;
    case '-':
        appendCharacter(QChar::SoftHyphen);
        break;
    case '_':
        appendCharacter(0x2011);
        break;
    case '\t':
        appendCharacter('\t');
        break;
    case '\r':
    case '\n':
        paragraphEnd(token, 0);
        break;
    default:
        break;
    }
}

void Parser::bytes(const Token& token) {
    if (skipped(token)) {
        return;
    }
    m_state.fresh = false;
    if (token.kind == TokenKind::Text) {
        append(token.text);
    } else if (token.hasNumber && token.number != '\r' && token.number != '\n' &&
               (token.number != 0 || !inBody())) {
        const char byte = static_cast<char>(token.number);
        if (m_pending.isEmpty() && page() == 1252 && inBody()) {
            appendCharacter(characterOf1252(static_cast<unsigned char>(byte)));
        } else {
            append(QByteArrayView(&byte, 1));
        }
    }
}

int Parser::page() const {
    return m_state.codePage != 0 ? m_state.codePage : m_documentPage;
}

void Parser::append(QByteArrayView bytes) {
    if (m_state.destination == Destination::Skip) {
        return;
    }
    if (inBody() && m_pending.isEmpty() && m_state.codePage != kSymbolCodePage && isAscii(bytes)) {
        // The common case without a copy.
        m_builder.asciiText(bytes, format(), m_state.field);
        return;
    }
    m_pending += bytes;
}

void Parser::appendCharacter(char16_t character) {
    flush();
    deliver(QStringView(&character, 1));
}

void Parser::flush() {
    if (m_pending.isEmpty()) {
        return;
    }
    const QByteArray bytes = std::exchange(m_pending, {});
    int codePage = page();
    if (m_state.destination == Destination::FontTable) {
        codePage = m_fontPage != 0 && m_fontPage != kSymbolCodePage ? m_fontPage : m_documentPage;
    } else if (m_state.destination == Destination::ListLevelText) {
        codePage = 0;
    }
    deliver(decode(codePage, bytes));
}

void Parser::deliver(QStringView text) {
    switch (m_state.destination) {
    case Destination::Body:
        for (const QChar c : text) {
            const char16_t character = cleaned(c.unicode());
            m_surrogates = m_surrogates || c.isSurrogate();
            m_builder.text(QStringView(&character, 1), format(), m_state.field);
        }
        break;
    case Destination::FontTable:
        m_font.name += text;
        if (const qsizetype end = m_font.name.indexOf(u';'); end >= 0) {
            m_font.name.truncate(end);
            closeFont();
        }
        break;
    case Destination::ColourTable:
        for (qsizetype i = text.count(u';'); i > 0; --i) {
            const int colour = m_red << 16 | m_green << 8 | m_blue;
            m_document.colours.push_back(m_colourSet ? colour : kAutomatic);
            m_red = m_green = m_blue = 0;
            m_colourSet = false;
        }
        break;
    case Destination::PnBefore:
        m_pn.listBefore += text;
        break;
    case Destination::PnAfter:
        m_pn.listAfter += text;
        break;
    case Destination::ListLevelText:
        if (!m_levels.empty()) { // a list table inside the text begins anew
            m_levels.back().text += text.toLatin1();
        }
        break;
    default:
        break;
    }
}

void Parser::closeFont() {
    if (!std::exchange(m_fontOpen, false)) {
        return;
    }
    m_font.name = m_font.name.trimmed();
    m_builder.addFont(m_font);
    m_fontPages.emplace(m_font.number, m_fontPage);
    if (m_font.number == m_defaultNumber) {
        useDefaultFont(m_fontPage);
    }
}

void Parser::useDefaultFont(int codePage) {
    m_document.defaultFont = m_builder.fontByNumber(m_defaultNumber);
    m_state.chars.font = m_document.defaultFont;
    m_state.codePage = codePage;
    for (State& state : m_stack) {
        state.chars.font = m_document.defaultFont;
        state.codePage = codePage;
    }
}

void Parser::ensureDefaultFont() {
    if (!m_builder.hasFont(m_defaultNumber)) {
        m_builder.addFont(Font{.number = m_defaultNumber, .name = QStringLiteral("Arial")});
        useDefaultFont(0);
    }
}

int Parser::format() {
    if (m_lastFormat < 0 || !(m_lastChars == m_state.chars)) {
        ensureDefaultFont();
        m_lastChars = m_state.chars;
        m_lastFormat = m_builder.charFormat(m_state.chars);
    }
    return m_lastFormat;
}

int Parser::paragraphFormat() {
    if (m_lastPar < 0 || !(m_lastPars == m_state.pars)) {
        m_lastPars = m_state.pars;
        m_lastPar = m_builder.parFormat(m_state.pars);
    }
    return m_lastPar;
}

QByteArray Parser::takeGroup() {
    const qsizetype begin = m_state.begin;
    const bool closed = m_tokens.skipGroup();
    m_document.incomplete = m_document.incomplete || !closed;
    QByteArray group = keepGroup(m_tokens.input(), begin, m_tokens.position(), closed);
    m_state = m_stack.back();
    m_stack.pop_back();
    return group;
}

void Parser::addInline(InlineKind kind, const QByteArray& raw) {
    m_builder.inlineGroup(kind, raw, format(), m_state.field);
}

bool isRtf(QStringView text) {
    return text.trimmed().startsWith(QLatin1String("{\\rtf"));
}

Document read(QByteArrayView rtf) {
    Document document;
    if (!rtf.trimmed().startsWith("{\\rtf")) {
        return fromPlainText(QString::fromUtf8(rtf));
    }
    Parser(rtf, document).run();
    return document;
}

Document read(QStringView rtf) {
    if (!isRtf(rtf)) {
        return fromPlainText(rtf);
    }
    if (std::all_of(rtf.begin(), rtf.end(), [](QChar c) { return c.unicode() <= 0xFF; })) {
        return read(QByteArrayView(rtf.toLatin1()));
    }
    QByteArray bytes;
    bytes.reserve(rtf.size() + 64);
    for (const QChar c : rtf) {
        if (c.unicode() <= 0xFF) {
            bytes += static_cast<char>(c.unicode());
        } else {
            bytes += "{\\uc1\\u" + QByteArray::number(c.unicode()) + "?}";
        }
    }
    return read(QByteArrayView(bytes));
}

Document fromPlainText(QStringView text) {
    Document document;
    document.colours.push_back(kAutomatic);
    Builder builder(document);
    builder.font(QStringLiteral("Arial"));
    const int format = builder.charFormat(CharFormat{});
    const int par = builder.parFormat(ParFormat{});
    QString plain = text.toString();
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    plain.replace(u'\r', u'\n');
    plain.remove(QChar(u'\0'));
    const auto lines = QStringView(plain).split(u'\n');
    for (const QStringView line : lines) {
        builder.text(line, format);
        builder.endParagraph(par, format);
    }
    return document;
}

} // namespace yrw::rtf
