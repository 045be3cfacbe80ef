#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/Model.h"
#include "platform/rtf/Tokenizer.h"

#include <QByteArray>

#include <string_view>
#include <unordered_map>
#include <vector>

namespace yrw::rtf {

/// Where the text of a group goes.
enum class Destination : quint8 {
    Body,
    Skip,
    FontTable,
    ColourTable,
    Pn,
    PnBefore,
    PnAfter,
    ListTable,
    ListLevelText,
    ListOverrides,
    NestedRow ///< the format of a row inside a cell
};

/// What a group inherits from the one around it.
struct State {
    CharFormat chars;
    ParFormat pars;
    qsizetype begin = 0;       ///< offset of the group's brace
    qsizetype fieldStart = 0;  ///< length of the text where the field began
    size_t fieldParagraph = 0; ///< number of paragraphs before it
    int codePage = 0;          ///< of the current font; 0: the document's
    int uc = 1;                ///< items to skip after \u
    int field = -1;
    int listNumber = 0; ///< \ls
    int listLevel = 0;  ///< \ilvl
    Destination destination = Destination::Body;
    int tableLevel = 0;     ///< number of tables around the paragraph
    bool starred = false;   ///< the group began with \*
    bool fresh = false;     ///< nothing was read in the group yet
    bool isField = false;   ///< a \field group
    bool ownsField = false; ///< its instruction was read before any text
};

/// A level of a list of the list table.
struct ListLevel {
    ListKind kind = ListKind::None;
    int start = 1;
    QByteArray text;
};

/// A row whose cells are being read.
struct OpenRow {
    int index = 0; ///< in `Document::rows`
    int cell = 0;  ///< the cell that is being read
};

/// One pass over the input. Control words are looked up in a table of handlers (Words.cpp).
class Parser {
public:
    Parser(QByteArrayView input, Document& document);
    void run();

    using Handler = void (Parser::*)(const Token& token, int value);

    // Handlers: `value` is the table's second column.
    void toggle(const Token& token, int value);
    void charValue(const Token& token, int value);
    void plain(const Token& token, int value);
    void fontNumber(const Token& token, int value);
    void parValue(const Token& token, int value);
    void alignment(const Token& token, int value);
    void pard(const Token& token, int value);
    void tab(const Token& token, int value);
    void character(const Token& token, int value);
    void unicode(const Token& token, int value);
    void documentValue(const Token& token, int value);
    void paragraphEnd(const Token& token, int value);
    void pageBreak(const Token& token, int value);
    void tableWord(const Token& token, int value);
    void listWord(const Token& token, int value);
    void pnWord(const Token& token, int value);
    void listTableWord(const Token& token, int value);
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
    void applyList();
    void startRows(int level);
    void endCell(int level);
    void endRow();
    void endRows(int level);
    void cellWord(int level);
    void rowWord(int level);
    [[nodiscard]] int lastLevel() const;
    void closeFont();
    void useDefaultFont(int codePage);
    void ensureDefaultFont();
    void skipHere();
    [[nodiscard]] int colourAt(int index) const;
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
    State m_state;
    std::vector<State> m_stack;
    qsizetype m_overflow = 0; ///< groups open beyond the deepest that is kept apart
    QByteArray m_pending;     ///< bytes that wait for the end of their run
    int m_skip = 0;           ///< items to skip after \u
    bool m_done = false;
    bool m_surrogates = false;
    qsizetype m_pictureEnd = -1; ///< length of the text right behind the better of two renderings
    CharFormat m_lastChars;
    ParFormat m_lastPars;
    int m_lastPar = -1;
    int m_lastFormat = -1;

    int m_defaultNumber = 0;
    int m_documentPage = 1252;
    Font m_font;
    int m_fontPage = 0;
    bool m_fontOpen = false;
    std::unordered_map<int, int> m_fontPages; ///< code page by font number
    int m_red = 0;
    int m_green = 0;
    int m_blue = 0;
    bool m_colourSet = false;

    ParFormat m_pn;
    Row m_row;                   ///< format of the next row, as far as it is known
    Row m_nestedRow;             ///< the same of a row inside a cell
    std::vector<OpenRow> m_open; ///< the outermost first
    std::unordered_map<int, std::vector<ListLevel>> m_lists; ///< by list id
    std::unordered_map<int, int> m_overrides;                ///< list id by \ls number
    std::vector<ListLevel> m_levels;
    int m_listId = 0;
};

/// The table's entry for a control word; a null handler when the word is unknown.
struct WordEntry {
    std::string_view name = {};
    Parser::Handler handler = nullptr;
    int value = 0;
};
[[nodiscard]] WordEntry findWord(QByteArrayView name);

} // namespace yrw::rtf
