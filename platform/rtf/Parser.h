#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/ColourTable.h"
#include "platform/rtf/FontTable.h"
#include "platform/rtf/FormatWords.h"
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

    /// `value` is the table's second column.
    using Handler = void (*)(Parser& parser, const Token& token, int value);

    // Handlers.
    [[nodiscard]] FormatWords& formats() { return m_formats; }
    void plain(const Token& token, int value);
    void fontNumber(const Token& token, int value);
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
    FormatWords m_formats{m_state, m_colours};
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
