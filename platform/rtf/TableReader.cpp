#include "platform/rtf/TableReader.h"

#include "platform/rtf/WordValues.h"

#include <algorithm>

namespace yrw::rtf {

namespace {

/// A row with more cells is cut into text: no screen shows it and its table would not fit memory.
constexpr int kMostCells = 63;

} // namespace

/// Number of tables around the last paragraph.
int TableReader::lastLevel() const {
    return m_document.paragraphs.empty() ? 0 : m_document.depthOf(m_document.paragraphs.back().row);
}

void TableReader::startRows(int level) {
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

void TableReader::endCell(int level) {
    endRows(level);
    startRows(level);
    m_endParagraph(m_open.back().index, m_open.back().cell);
    ++m_open.back().cell;
}

/// Ends the innermost open row in the format that its end gave it.
void TableReader::endRow() {
    const OpenRow open = m_open.back();
    Row& stored = at(m_document.rows, open.index);
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
void TableReader::endRows(int level) {
    while (static_cast<int>(m_open.size()) > level) {
        const int innermost = static_cast<int>(m_open.size());
        if (lastLevel() > innermost) {
            endCell(innermost);
        }
        endRow();
    }
}

bool TableReader::cellWord(int level) {
    endRows(level);
    if (static_cast<int>(m_open.size()) == level && m_open.back().cell >= kMostCells) {
        return false;
    }
    endCell(level);
    return true;
}

void TableReader::rowWord(int level) {
    endRows(level);
    if (!m_builder.paragraphIsEmpty()) {
        endCell(level);
    }
    endRows(level - 1);
}

bool TableReader::word(const Token& token, int value, bool nested, int tables) {
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
        return cellWord(1);
    case kRowEnd:
        rowWord(1);
        break;
    case kNestedCellEnd:
        return cellWord(std::max(tables, 2));
    default:
        rowWord(std::clamp(static_cast<int>(m_open.size()), 2, kMostNested));
        break;
    }
    return true;
}

void TableReader::endParagraph(int tables) {
    // Behind a row inside a cell comes a paragraph of that cell.
    const int level = std::max(tables, lastLevel() - 1);
    endRows(level);
    startRows(level);
    const OpenRow place = level > 0 ? m_open.back() : OpenRow{.index = -1};
    m_endParagraph(place.index, place.cell);
}

void TableReader::finish() {
    if (!m_open.empty() && !m_builder.paragraphIsEmpty()) {
        endCell(static_cast<int>(m_open.size()));
    }
    endRows(0);
}

} // namespace yrw::rtf
