#include "platform/rtf/Parser.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/WordValues.h"

#include <algorithm>

// Table rows, lists, and the document's font, colour and list tables.

namespace yrw::rtf {

namespace {

/// A row with more cells is cut into text: no screen shows it and its table would not fit memory.
constexpr int kMostCells = 63;

ListKind kindOfNumber(int number) {
    switch (number) {
    case 1:
        return ListKind::UpperRoman;
    case 2:
        return ListKind::LowerRoman;
    case 3:
        return ListKind::UpperLetter;
    case 4:
        return ListKind::LowerLetter;
    case 23:
        return ListKind::Bullet;
    case 255:
        return ListKind::None;
    default:
        return ListKind::Decimal;
    }
}

/// The text behind the last number of a level: "\2\0.;" gives ".".
QString textAfterNumber(const QByteArray& level) {
    qsizetype last = -1;
    for (qsizetype i = 1; i < level.size(); ++i) {
        last = static_cast<unsigned char>(level[i]) < 9 ? i : last;
    }
    QByteArray after = last < 0 ? QByteArray() : level.mid(last + 1);
    after.truncate(std::max<qsizetype>(after.indexOf(';'), 0));
    return QString::fromLatin1(after);
}

} // namespace

/// Number of tables around the last paragraph.
int Parser::lastLevel() const {
    return m_document.paragraphs.empty() ? 0 : m_document.depthOf(m_document.paragraphs.back().row);
}

void Parser::startRows(int level) {
    while (static_cast<int>(m_open.size()) < level) {
        Row row = m_open.empty() ? m_row : Row{};
        if (!m_open.empty()) {
            row.parent = m_open.back().index;
            row.parentCell = m_open.back().cell;
        }
        m_open.push_back({.index = static_cast<int>(m_document.rows.size())});
        m_document.rows.push_back(row);
    }
}

void Parser::endCell(int level) {
    endRows(level);
    startRows(level);
    m_builder.endParagraph(paragraphFormat(), format(), m_open.back().index, m_open.back().cell);
    ++m_open.back().cell;
}

/// Ends the innermost open row in the format that its end gave it.
void Parser::endRow() {
    const OpenRow open = m_open.back();
    Row& stored = m_document.rows[static_cast<std::size_t>(open.index)];
    Row row = m_open.size() == 1 ? m_row : m_nestedRow;
    row.parent = stored.parent;
    row.parentCell = stored.parentCell;
    int count = std::max(open.cell, 1);
    if (m_document.paragraphs.back().row == open.index) {
        count = std::max(count, m_document.paragraphs.back().cell + 1); // a cell left open
    }
    // Cells without an edge are one inch wide; edges without a cell are not there.
    while (row.edges.size() < count) {
        row.edges.append((row.edges.isEmpty() ? row.left : row.edges.last()) + 1440);
    }
    row.edges.resize(count);
    stored = row;
    m_open.pop_back();
    m_nestedRow = Row{};
}

/// Ends the rows that lie deeper than `level`.
void Parser::endRows(int level) {
    while (static_cast<int>(m_open.size()) > level) {
        const int innermost = static_cast<int>(m_open.size());
        if (lastLevel() > innermost) {
            endCell(innermost);
        }
        endRow();
    }
}

void Parser::cellWord(int level) {
    endRows(level);
    if (static_cast<int>(m_open.size()) == level && m_open.back().cell >= kMostCells) {
        appendCharacter('\t');
    } else {
        endCell(level);
    }
}

void Parser::rowWord(int level) {
    endRows(level);
    if (!m_builder.paragraphIsEmpty()) {
        endCell(level);
    }
    endRows(level - 1);
}

void Parser::tableWord(const Token& token, int value) {
    const bool nested = m_state.destination == Destination::NestedRow;
    if (!inBody() && !nested) {
        return;
    }
    Row& row = nested ? m_nestedRow : m_row;
    switch (value) {
    case kRowStart:
        row = Row{};
        break;
    case kCellEdge:
        if (row.edges.size() < kMostCells) {
            row.edges.append(std::clamp(token.number, -31680, 31680));
        }
        break;
    case kRowGap:
        row.gap = std::clamp(token.number, 0, 1440);
        break;
    case kRowLeft:
        row.left = std::clamp(token.number, -31680, 31680);
        break;
    case kBorders:
        row.borders = true;
        break;
    case kCellEnd:
        cellWord(1);
        break;
    case kRowEnd:
        rowWord(1);
        break;
    case kNestedCellEnd:
        cellWord(std::max(m_state.tableLevel, 2));
        break;
    default:
        rowWord(std::clamp(static_cast<int>(m_open.size()), 2, kMostNested));
        break;
    }
}

void Parser::listWord(const Token& token, int value) {
    if (m_state.destination == Destination::ListOverrides) {
        m_overrides[token.number] = m_listId;
        return;
    }
    (value == kListNumber ? m_state.listNumber : m_state.listLevel) = token.number;
    applyList();
}

void Parser::applyList() {
    const auto override = m_overrides.find(m_state.listNumber);
    const auto list =
        override == m_overrides.end() ? m_lists.end() : m_lists.find(override->second);
    ParFormat& pars = m_state.pars;
    if (list == m_lists.end() || list->second.empty()) {
        pars.list = ListKind::None;
        return;
    }
    const int last = static_cast<int>(list->second.size()) - 1;
    const ListLevel& level =
        list->second[static_cast<std::size_t>(std::clamp(m_state.listLevel, 0, last))];
    pars.list = level.kind;
    pars.listStart = level.start;
    pars.listBefore.clear();
    const bool numbered = level.kind != ListKind::Bullet && level.kind != ListKind::None;
    pars.listAfter = numbered ? textAfterNumber(level.text) : QString();
}

void Parser::pnWord(const Token& token, int value) {
    if (m_state.destination != Destination::Pn) {
        return;
    }
    if (value == kPnStart) {
        m_pn.listStart = std::clamp(token.number, 0, 32767);
    } else {
        m_pn.list = static_cast<ListKind>(value);
    }
}

void Parser::listTableWord(const Token& token, int value) {
    if (value == kListId) {
        m_listId = token.number;
        if (m_state.destination == Destination::ListTable) {
            m_lists[m_listId] = m_levels;
        }
        return;
    }
    if (m_state.destination != Destination::ListTable) {
        return;
    }
    if (value == kListStart) {
        m_levels.clear();
    } else if (value == kLevelStart) {
        m_levels.resize(std::min<std::size_t>(m_levels.size() + 1, 9));
    } else if (!m_levels.empty()) {
        if (value == kLevelKind) {
            m_levels.back().kind = kindOfNumber(token.number);
        } else {
            m_levels.back().start = std::clamp(token.number, 0, 32767);
        }
    }
}

void Parser::fontTableWord(const Token& token, int value) {
    if (m_state.destination != Destination::FontTable) {
        return;
    }
    switch (value) {
    case kCharset:
        m_font.charset = token.number;
        m_fontPage = codePageOfCharset(token.number);
        break;
    case kFontCodePage:
        m_fontPage = m_fontPage != 0 ? m_fontPage : std::max(0, token.number);
        break;
    default:
        m_font.family = token.text.sliced(1).toByteArray();
        break;
    }
}

void Parser::colourWord(const Token& token, int value) {
    if (m_state.destination != Destination::ColourTable) {
        return;
    }
    m_colourSet = true;
    int& part = value == 0 ? m_red : value == 1 ? m_green : m_blue;
    part = std::clamp(token.number, 0, 255);
}

} // namespace yrw::rtf
