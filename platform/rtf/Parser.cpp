#include "platform/rtf/Parser.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/Fields.h"
#include "platform/rtf/WordValues.h"

#include <algorithm>
#include <utility>

namespace yrw::rtf {

namespace {

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
    : m_tokens(input), m_document(document), m_builder(document),
      m_fonts(document, m_builder,
              [this](const FontTable::Choice& it) { m_groups.setFont(it.font, it.codePage); }),
      m_tables(document, m_builder, [this](int row, int cell) {
          m_builder.endParagraph(paragraphFormat(), format(), row, cell);
      }) {}

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
    m_document.incomplete = m_document.incomplete || m_tokens.overran() || m_groups.isTooDeep();
    m_tables.finish();
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
    m_document.incomplete = !m_groups.open(token.begin) || m_document.incomplete;
}

void Parser::closeGroup(const Token& token) {
    flush();
    m_skip = 0;
    if (m_groups.closeCounted()) {
        return;
    }
    if (m_groups.depth() == 0) {
        m_document.incomplete = true; // a brace too many before the document
        return;
    }
    closeDestination();
    const GroupState closed = m_groups.leave();
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
    if (m_groups.depth() == 0) {
        m_state = closed; // the formats at the document's end
        m_done = true;
    }
}

void Parser::closeDestination() {
    const Destination parent =
        m_groups.depth() == 0 ? Destination::Body : m_groups.around().destination;
    if (m_state.destination == Destination::FontTable) {
        m_fonts.end();
        if (parent != Destination::FontTable) {
            m_fonts.ensureDefault();
        }
    } else if (m_state.destination == Destination::Pn && parent != Destination::Pn) {
        m_lists.endItem(m_groups.around().pars);
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
        entry.handler(*this, token, entry.value);
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
        codePage = m_fonts.namePage(m_documentPage);
    } else if (m_state.destination == Destination::ListLevelText) {
        codePage = 0;
    } else if (!inBody() && codePage == kSymbolCodePage) {
        codePage = m_documentPage; // what stands around a list's numbers is letters
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
        m_fonts.name(text);
        break;
    case Destination::ColourTable:
        m_colours.text(text);
        break;
    case Destination::PnBefore:
        m_lists.itemText(text, true);
        break;
    case Destination::PnAfter:
        m_lists.itemText(text, false);
        break;
    case Destination::ListLevelText:
        m_lists.levelText(text);
        break;
    default:
        break;
    }
}

int Parser::format() {
    if (m_lastFormat < 0 || !(m_lastChars == m_state.chars)) {
        m_fonts.ensureDefault();
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
    m_groups.leave();
    return group;
}

void Parser::addInline(InlineKind kind, const QByteArray& raw) {
    m_builder.inlineGroup(kind, raw, format(), m_state.field);
}

void Parser::plain(const Token&, int) {
    m_state.chars = CharFormat{};
    useFont(m_fonts.defaultFont());
}

void Parser::useFont(const FontTable::Choice& font) {
    m_state.chars.font = font.font;
    m_state.codePage = font.codePage;
}

void Parser::fontNumber(const Token& token, int) {
    if (m_state.destination == Destination::FontTable) {
        m_fonts.begin(token.number);
    } else {
        useFont(m_fonts.font(token.number));
    }
}

void Parser::pard(const Token&, int) {
    m_state.pars = ParFormat{};
    m_state.tableLevel = 0;
    m_state.listNumber = 0;
    m_state.listLevel = 0;
}

void Parser::unicode(const Token& token, int) {
    const int code = token.number < 0 ? token.number + 0x10000 : token.number;
    if (code >= 0x10000 && code <= 0x10FFFF) {
        const auto wide = static_cast<char32_t>(code);
        m_surrogates = true;
        deliver(QString::fromUcs4(&wide, 1));
    } else if (code == '\n' || code == '\v' || code == '\r') {
        appendCharacter(kLineBreak);
    } else if (code == '\t' || (code >= 0x20 && code < 0x10000)) {
        appendCharacter(static_cast<char16_t>(code));
    }
    m_skip = m_state.uc;
}

void Parser::codePage(const Token& token, int value) {
    value = value > 0 ? value : token.number;
    m_documentPage = value > 0 ? value : m_documentPage;
}

void Parser::paragraphEnd(const Token&, int) {
    flush();
    if (inBody()) {
        m_tables.endParagraph(m_state.tableLevel);
    }
}

void Parser::pageBreak(const Token&, int) {
    if (inBody()) {
        addInline(InlineKind::Kept, QByteArrayLiteral("{\\page}"));
    }
}

void Parser::tableWord(const Token& token, int value) {
    const bool nested = m_state.destination == Destination::NestedRow;
    if ((inBody() || nested) && !m_tables.word(token, value, nested, m_state.tableLevel)) {
        appendCharacter('\t');
    }
}

void Parser::listWord(const Token& token, int value) {
    if (m_state.destination == Destination::ListOverrides) {
        m_lists.nameList(token.number);
        return;
    }
    (value == kListNumber ? m_state.listNumber : m_state.listLevel) = token.number;
    m_lists.apply(m_state.pars, m_state.listNumber, m_state.listLevel);
}

void Parser::fontTableWord(const Token& token, int value) {
    if (m_state.destination == Destination::FontTable) {
        m_fonts.word(token, value);
    }
}

void Parser::colourWord(const Token& token, int value) {
    if (m_state.destination == Destination::ColourTable) {
        m_colours.part(value, token.number);
    }
}

void Parser::skipHere() {
    if (m_state.fresh && m_groups.depth() > 0) {
        const bool closed = m_tokens.skipGroup();
        m_document.incomplete = m_document.incomplete || !closed;
        m_groups.leave();
    } else if (m_groups.depth() > 1) {
        m_state.destination = Destination::Skip;
    }
}

void Parser::destination(const Token&, int value) {
    const auto wanted = static_cast<Destination>(value);
    if (wanted == Destination::Skip) {
        skipHere();
        return;
    }
    if (wanted == Destination::Body || m_groups.depth() < 2) {
        return; // text goes where the group around it sends it
    }
    if (wanted == Destination::NestedRow && !inBody()) {
        skipHere();
        return;
    }
    if (wanted == Destination::Pn) {
        m_lists.beginItem();
    } else if (wanted == Destination::ColourTable) {
        m_colours.begin();
    } else if (wanted == Destination::ListLevelText && !m_lists.hasLevel()) {
        skipHere();
        return;
    }
    m_state.destination = wanted;
}

void Parser::keepHere(const Token& token, int) {
    if (!m_state.fresh || m_groups.depth() < 2 || !inBody()) {
        skipHere();
        return;
    }
    if (m_builder.isEmpty() && m_groups.depth() == 2) {
        keepInHeader(token, 0);
        return;
    }
    const QByteArray group = takeGroup();
    addInline(InlineKind::Kept, group);
}

void Parser::keepInHeader(const Token&, int) {
    if (!m_state.fresh || m_groups.depth() < 2 || !inBody()) {
        skipHere();
        return;
    }
    m_document.kept.push_back(takeGroup());
}

void Parser::picture(const Token&, int value) {
    const bool second = value == kPlainerPicture && m_pictureEnd == m_document.text.size();
    if (!m_state.fresh || m_groups.depth() < 2 || !inBody() || second) {
        skipHere();
        return;
    }
    const InlineKind kind =
        value == static_cast<int>(InlineKind::Object) ? InlineKind::Object : InlineKind::Picture;
    const QByteArray group = takeGroup();
    addInline(kind, group);
    m_pictureEnd = value == kBetterPicture ? m_document.text.size() : -1;
}

void Parser::field(const Token&, int) {
    m_state.isField = m_state.fresh;
    m_state.fieldStart = m_document.text.size();
    m_state.fieldParagraph = m_document.paragraphs.size();
}

void Parser::instruction(const Token&, int) {
    if (!m_state.fresh || m_groups.depth() < 3 || !inBody()) {
        skipHere();
        return;
    }
    const QByteArray group = takeGroup();
    m_state.field = m_builder.field(fieldOf(group));
    m_state.ownsField = m_state.isField && m_state.fieldStart == m_document.text.size();
}

} // namespace yrw::rtf
