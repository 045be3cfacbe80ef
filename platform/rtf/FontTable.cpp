#include "platform/rtf/FontTable.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/WordValues.h"

#include <algorithm>

namespace yrw::rtf {

namespace {

/// There is room for the numbers of more fonts above.
int fontNumberOf(int number) {
    constexpr int kLargestNumber = 1 << 24;
    return std::clamp(number, 0, kLargestNumber);
}

} // namespace

void FontTable::setDefault(int number) {
    m_default = fontNumberOf(number);
}

void FontTable::begin(int number) {
    end();
    m_font = Font{.number = fontNumberOf(number), .name = {}};
    m_page = 0;
    m_open = true;
}

void FontTable::word(const Token& token, int value) {
    switch (value) {
    case kCharset:
        m_font.charset = token.number;
        m_page = codePageOfCharset(token.number);
        break;
    case kFontCodePage:
        m_page = m_page != 0 ? m_page : std::max(0, token.number);
        break;
    default:
        m_font.family = token.text.sliced(1).toByteArray();
        break;
    }
}

void FontTable::name(QStringView text) {
    m_font.name += text;
    if (const qsizetype end = m_font.name.indexOf(u';'); end >= 0) {
        m_font.name.truncate(end);
        this->end();
    }
}

void FontTable::end() {
    if (!std::exchange(m_open, false)) {
        return;
    }
    m_font.name = m_font.name.trimmed();
    m_builder.addFont(m_font);
    m_pages.emplace(m_font.number, m_page);
    if (m_font.number == m_default) {
        m_document.defaultFont = m_builder.fontByNumber(m_default);
        m_useDefault({m_document.defaultFont, m_page});
    }
}

int FontTable::namePage(int documentPage) const {
    return m_page != 0 && m_page != kSymbolCodePage ? m_page : documentPage;
}

void FontTable::ensureDefault() {
    if (!m_builder.hasFont(m_default)) {
        m_builder.addFont(Font{.number = m_default, .name = QStringLiteral("Arial")});
        m_document.defaultFont = m_builder.fontByNumber(m_default);
        m_useDefault({m_document.defaultFont, 0});
    }
}

int FontTable::pageOf(int number) const {
    const auto page = m_pages.find(number);
    return page == m_pages.end() ? 0 : page->second;
}

FontTable::Choice FontTable::defaultFont() const {
    return {m_document.defaultFont, pageOf(m_default)};
}

FontTable::Choice FontTable::font(int number) const {
    const int known = fontNumberOf(number);
    return {m_builder.fontByNumber(known), pageOf(m_pages.contains(known) ? known : m_default)};
}

} // namespace yrw::rtf
