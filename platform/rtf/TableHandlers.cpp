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

void Parser::startRow() {
    if (m_rowIndex < 0) {
        m_rowIndex = static_cast<int>(m_document.rows.size());
        m_document.rows.push_back(m_row);
        m_cell = 0;
    }
}

void Parser::endCell() {
    startRow();
    m_builder.endParagraph(paragraphFormat(), format(), m_rowIndex, m_cell);
    ++m_cell;
}

void Parser::endRow() {
    Row row = m_row;
    int count = std::max(m_cell, 1);
    if (!m_document.paragraphs.empty() && m_document.paragraphs.back().row == m_rowIndex) {
        count = std::max(count, m_document.paragraphs.back().cell + 1); // a cell left open
    }
    // Cells without an edge are one inch wide; edges without a cell are not there.
    while (row.edges.size() < count) {
        row.edges.append((row.edges.isEmpty() ? row.left : row.edges.last()) + 1440);
    }
    row.edges.resize(count);
    m_document.rows[static_cast<std::size_t>(m_rowIndex)] = row;
    m_rowIndex = -1;
    m_cell = 0;
}

void Parser::tableWord(const Token& token, int value) {
    if (!inBody()) {
        return;
    }
    switch (value) {
    case kRowStart:
        m_row = Row{};
        break;
    case kCellEdge:
        if (m_row.edges.size() < kMostCells) {
            m_row.edges.append(std::clamp(token.number, -31680, 31680));
        }
        break;
    case kRowGap:
        m_row.gap = std::clamp(token.number, 0, 1440);
        break;
    case kRowLeft:
        m_row.left = std::clamp(token.number, -31680, 31680);
        break;
    case kBorders:
        m_row.borders = true;
        break;
    case kCellEnd:
        if (m_cell < kMostCells) {
            endCell();
        } else {
            appendCharacter('\t');
        }
        break;
    default:
        if (!m_builder.paragraphIsEmpty()) {
            endCell();
        }
        if (m_rowIndex >= 0) {
            endRow();
        }
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
