#include "platform/rtf/Parser.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/WordValues.h"

#include <algorithm>

// Characters and paragraphs.

namespace yrw::rtf {

namespace {

constexpr int kLongestLength = 31680; ///< 22 inches in twips, the most a length can be
constexpr int kLargestSize = 3276;    ///< half points
constexpr qsizetype kMostTabs = 64;

/// There is room for the numbers of more fonts above.
int fontNumberOf(int number) {
    constexpr int kLargestNumber = 1 << 24;
    return std::clamp(number, 0, kLargestNumber);
}

int length(int twips) {
    return std::clamp(twips, -kLongestLength, kLongestLength);
}

} // namespace

void Parser::toggle(const Token& token, int value) {
    const bool on = !token.hasNumber || token.number != 0;
    CharFormat& chars = m_state.chars;
    switch (value) {
    case kBold:
        chars.bold = on;
        break;
    case kItalic:
        chars.italic = on;
        break;
    case kUnderline:
        chars.underline = on;
        break;
    case kNoUnderline:
        chars.underline = false;
        break;
    case kStrike:
        chars.strike = on;
        break;
    case kHidden:
        chars.hidden = on;
        break;
    case kSuper:
        chars.script = on ? Script::Super : Script::Normal;
        break;
    case kSub:
        chars.script = on ? Script::Sub : Script::Normal;
        break;
    default:
        chars.script = Script::Normal;
        break;
    }
}

int Parser::colourAt(int index) const {
    return index > 0 && index < static_cast<int>(m_document.colours.size())
               ? m_document.colours[static_cast<std::size_t>(index)]
               : kAutomatic;
}

void Parser::charValue(const Token& token, int value) {
    CharFormat& chars = m_state.chars;
    switch (value) {
    case kSuper:
    case kSub: {
        const bool raised = !token.hasNumber || token.number != 0;
        const Script script = value == kSuper ? Script::Super : Script::Sub;
        chars.script = raised ? script : Script::Normal;
        break;
    }
    case kSize:
        if (token.number > 0) {
            chars.halfPoints = std::min(token.number, kLargestSize);
        }
        break;
    case kColour:
        chars.colour = colourAt(token.number);
        break;
    default:
        chars.background = colourAt(token.number);
        break;
    }
}

void Parser::plain(const Token&, int) {
    m_state.chars = CharFormat{};
    m_state.chars.font = m_document.defaultFont;
    const auto page = m_fontPages.find(m_defaultNumber);
    m_state.codePage = page == m_fontPages.end() ? 0 : page->second;
}

void Parser::fontNumber(const Token& token, int) {
    const int number = fontNumberOf(token.number);
    if (m_state.destination == Destination::FontTable) {
        closeFont();
        m_font = Font{.number = number, .name = {}};
        m_fontPage = 0;
        m_fontOpen = true;
        return;
    }
    m_state.chars.font = m_builder.fontByNumber(number);
    auto page = m_fontPages.find(number);
    page = page == m_fontPages.end() ? m_fontPages.find(m_defaultNumber) : page;
    m_state.codePage = page == m_fontPages.end() ? 0 : page->second;
}

void Parser::parValue(const Token& token, int value) {
    ParFormat& pars = m_state.pars;
    switch (value) {
    case kLeftIndent:
        pars.left = length(token.number);
        break;
    case kRightIndent:
        pars.right = length(token.number);
        break;
    case kFirstIndent:
        pars.first = length(token.number);
        break;
    case kSpaceBefore:
        pars.before = std::max(0, length(token.number));
        break;
    case kSpaceAfter:
        pars.after = std::max(0, length(token.number));
        break;
    case kLineSpacing:
        pars.lineSpacing = length(token.number);
        break;
    case kLineMultiple:
        pars.lineMultiple = token.number != 0;
        break;
    case kStyle:
        pars.style = std::max(0, token.number);
        break;
    case kInTable:
        m_state.tableLevel = std::max(m_state.tableLevel, 1);
        break;
    case kTableLevel:
        m_state.tableLevel = std::clamp(token.number, 0, kMostNested);
        break;
    default:
        pars.rightToLeft = value == kRightToLeft;
        break;
    }
}

void Parser::tab(const Token& token, int) {
    if (m_state.pars.tabs.size() < kMostTabs) {
        m_state.pars.tabs.append(length(token.number));
    }
}

void Parser::alignment(const Token&, int value) {
    m_state.pars.alignment = static_cast<Alignment>(value);
}

void Parser::pard(const Token&, int) {
    m_state.pars = ParFormat{};
    m_state.tableLevel = 0;
    m_state.listNumber = 0;
    m_state.listLevel = 0;
}

void Parser::character(const Token&, int value) {
    appendCharacter(static_cast<char16_t>(value));
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

void Parser::documentValue(const Token& token, int value) {
    switch (value) {
    case kSkipCount:
        m_state.uc = std::max(0, token.number);
        break;
    case kAnsiCodePage:
        m_documentPage = token.number > 0 ? token.number : m_documentPage;
        break;
    case kDefaultFont:
        m_defaultNumber = fontNumberOf(token.number);
        break;
    case kMac:
        m_documentPage = 10000;
        break;
    case kPc:
        m_documentPage = 437;
        break;
    default:
        m_documentPage = 850;
        break;
    }
}

void Parser::paragraphEnd(const Token&, int) {
    flush();
    if (!inBody()) {
        return;
    }
    // Behind a row inside a cell comes a paragraph of that cell.
    const int level = std::max(m_state.tableLevel, lastLevel() - 1);
    endRows(level);
    startRows(level);
    const OpenRow place = level > 0 ? m_open.back() : OpenRow{.index = -1};
    m_builder.endParagraph(paragraphFormat(), format(), place.index, place.cell);
}

void Parser::pageBreak(const Token&, int) {
    if (inBody()) {
        addInline(InlineKind::Kept, QByteArrayLiteral("{\\page}"));
    }
}

} // namespace yrw::rtf
