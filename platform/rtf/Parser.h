#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/ColourTable.h"
#include "platform/rtf/FontTable.h"
#include "platform/rtf/GroupStack.h"
#include "platform/rtf/Lists.h"
#include "platform/rtf/TableReader.h"
#include "platform/rtf/Tokenizer.h"

#include <QByteArray>

#include <algorithm>

namespace yrw::rtf {

/// One pass over the input. Control words are looked up in a table of handlers (Words.cpp).
class Parser {
public:
    Parser(QByteArrayView input, Document& document);
    void run();

    using Handler = void (Parser::*)(const Token& token, int value);
    static constexpr int kLongestLength = 31680; ///< 22 inches in twips, the most a length can be
    static constexpr int kLargestSize = 3276;    ///< half points
    static constexpr qsizetype kMostTabs = 64;

    // Handlers: `value` is the table's second column.
    /// A word without a number, or with one that is not 0, turns on.
    template <bool CharFormat::*part>
    void toggle(const Token& token, int) {
        m_state.chars.*part = !token.hasNumber || token.number != 0;
    }
    void noUnderline(const Token&, int) { m_state.chars.underline = false; }
    void script(const Token& token, int value) {
        const bool on = !token.hasNumber || token.number != 0;
        m_state.chars.script = on ? static_cast<Script>(value) : Script::Normal;
    }
    void fontSize(const Token& token, int) {
        if (token.number > 0) {
            m_state.chars.halfPoints = std::min(token.number, kLargestSize);
        }
    }
    template <int CharFormat::*part>
    void colour(const Token& token, int) {
        m_state.chars.*part = m_colours.at(token.number);
    }
    void plain(const Token& token, int value);
    void fontNumber(const Token& token, int value);
    /// A length in twips, of which `value` is the least.
    template <int ParFormat::*part>
    void length(const Token& token, int value) {
        m_state.pars.*part = std::clamp(token.number, value, kLongestLength);
    }
    void lineMultiple(const Token& token, int) { m_state.pars.lineMultiple = token.number != 0; }
    void style(const Token& token, int) { m_state.pars.style = std::max(0, token.number); }
    void direction(const Token&, int value) { m_state.pars.rightToLeft = value != 0; }
    void tabStop(const Token& token, int) {
        if (m_state.pars.tabs.size() < kMostTabs) {
            m_state.pars.tabs.append(std::clamp(token.number, -kLongestLength, kLongestLength));
        }
    }
    void inTable(const Token&, int) { m_state.tableLevel = std::max(m_state.tableLevel, 1); }
    void tableLevel(const Token& token, int) {
        m_state.tableLevel = std::clamp(token.number, 0, kMostNested);
    }
    void alignment(const Token&, int value) {
        m_state.pars.alignment = static_cast<Alignment>(value);
    }
    void pard(const Token& token, int value);
    void character(const Token&, int value) { appendCharacter(static_cast<char16_t>(value)); }
    void unicode(const Token& token, int value);
    void skipCount(const Token& token, int) { m_state.uc = std::max(0, token.number); }
    void defaultFont(const Token& token, int) { m_fonts.setDefault(token.number); }
    void codePage(const Token& token, int value);
    void paragraphEnd(const Token& token, int value);
    void pageBreak(const Token& token, int value);
    void tableWord(const Token& token, int value);
    void listWord(const Token& token, int value);
    void pnWord(const Token& token, int value) {
        if (m_state.destination == Destination::Pn) {
            m_lists.itemWord(token, value);
        }
    }
    void listTableWord(const Token& token, int value) {
        m_lists.word(token, value, m_state.destination == Destination::ListTable);
    }
    void fontTableWord(const Token& token, int value);
    void colourWord(const Token& token, int value);
    void destination(const Token& token, int value);
    void keepHere(const Token& token, int value);
    void keepInHeader(const Token& token, int value);
    void picture(const Token& token, int value);
    void field(const Token& token, int value);
    void instruction(const Token& token, int value);

private:
    void openGroup(const Token& token);
    void closeGroup(const Token& token);
    void closeDestination();
    void finish();
    void word(const Token& token);
    void symbol(const Token& token);
    void bytes(const Token& token);
    void append(QByteArrayView bytes);
    void appendCharacter(char16_t character);
    void flush();
    bool skipped(const Token& token);
    void deliver(QStringView text);
    void useFont(const FontTable::Choice& font);
    void skipHere();
    /// Moves behind the present group and leaves it; the group is what comes back.
    QByteArray takeGroup();
    void addInline(InlineKind kind, const QByteArray& raw);
    int format();
    int paragraphFormat();
    [[nodiscard]] int page() const;
    [[nodiscard]] bool inBody() const { return m_state.destination == Destination::Body; }

    Tokenizer m_tokens;
    Document& m_document;
    Builder m_builder;
    GroupStack m_groups;
    GroupState& m_state = m_groups.now();
    FontTable m_fonts;
    ColourTable m_colours{m_document.colours};
    Lists m_lists;
    TableReader m_tables;
    QByteArray m_pending; ///< bytes that wait for the end of their run
    int m_skip = 0;       ///< items to skip after \u
    bool m_done = false;
    bool m_surrogates = false;
    qsizetype m_pictureEnd = -1; ///< length of the text right behind the better of two renderings
    CharFormat m_lastChars;
    ParFormat m_lastPars;
    int m_lastPar = -1;
    int m_lastFormat = -1;
    int m_documentPage = 1252;
};

/// The table's entry for a control word; a null handler when the word is unknown.
struct WordEntry {
    Parser::Handler handler = nullptr;
    int value = 0;
};
[[nodiscard]] WordEntry findWord(QByteArrayView name);

} // namespace yrw::rtf
