#include "platform/rtf/TableOutput.h"

namespace yrw::rtf {

namespace {

/// What a reader that knows no tables inside cells makes of their cells and rows.
constexpr char kPlainEnd[] = "{\\nonesttables\\par}";

} // namespace

void TableOutput::format(int level) {
    m_out.word("pard");
    if (level > 0) {
        m_out.word("intbl");
    }
    if (level > 1) {
        m_out.word("itap", level);
    }
}

bool TableOutput::enter(const Paragraph& paragraph) {
    bool wroteFormat = false;
    const CellPath path = m_document.cellsOf(paragraph);
    for (int level = 0; level < path.depth; ++level) {
        const CellPlace& place = path.at(level);
        if (static_cast<int>(m_open.size()) == level) {
            m_open.push_back({.row = place.row});
            if (level == 0) {
                definition(row(place.row));
            } else {
                m_open[m_open.size() - 2].holdsTable = true;
            }
        }
        if (static_cast<int>(m_open.size()) == level + 1) {
            wroteFormat = fillCells(place.cell) || wroteFormat;
        }
    }
    return wroteFormat;
}

bool TableOutput::leave(const Paragraph& paragraph, const Paragraph* next) {
    const CellPath here = m_document.cellsOf(paragraph);
    const CellPath there = next == nullptr ? CellPath{} : m_document.cellsOf(*next);
    bool wroteFormat = false;
    for (int level = here.depth - 1; level >= 0; --level) {
        const CellPlace goesOn = level < there.depth ? there.at(level) : CellPlace{};
        if (goesOn == here.at(level)) {
            if (level + 1 == here.depth) {
                m_out.word("par");
                m_out.raw("\r\n");
            }
            break;
        }
        if (level + 1 < here.depth) {
            format(level + 1);
            wroteFormat = true;
        }
        endCell();
        if (goesOn.row == here.at(level).row) {
            break;
        }
        wroteFormat = endRow() || wroteFormat;
    }
    return wroteFormat;
}

void TableOutput::endCell() {
    if (m_open.size() == 1) {
        m_out.word("cell");
    } else {
        m_out.word("nestcell");
        m_out.raw(kPlainEnd);
    }
    ++m_open.back().cell;
}

/// Writes empty cells of the innermost row up to that number.
bool TableOutput::fillCells(int cells) {
    const bool some = m_open.back().cell < cells;
    while (m_open.back().cell < cells) {
        format(static_cast<int>(m_open.size()));
        endCell();
    }
    return some;
}

bool TableOutput::endRow() {
    const OpenRow open = m_open.back();
    bool wroteFormat = fillCells(static_cast<int>(row(open.row).edges.size()));
    if (m_open.size() == 1) {
        if (open.holdsTable) {
            definition(row(open.row)); // the rows inside had theirs
        }
        m_out.word("row");
    } else {
        m_out.raw("{\\*");
        m_out.word("nesttableprops");
        definition(row(open.row));
        m_out.word("nestrow");
        m_out.raw("}");
        m_out.raw(kPlainEnd);
        wroteFormat = true; // other readers count the next paragraph as of no table
    }
    m_out.raw("\r\n");
    m_open.pop_back();
    return wroteFormat;
}

void TableOutput::definition(const Row& row) {
    m_out.word("trowd");
    m_out.word("trgaph", row.gap);
    m_out.word("trleft", row.left);
    for (const int edge : row.edges) {
        if (row.borders) {
            for (const char* side : {"clbrdrl", "clbrdrt", "clbrdrr", "clbrdrb"}) {
                m_out.word(side);
                m_out.word("brdrw", 15);
                m_out.word("brdrs");
            }
        }
        m_out.word("cellx", edge);
    }
}

} // namespace yrw::rtf
