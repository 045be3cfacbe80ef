#pragma once

#include "platform/rtf/Model.h"
#include "platform/rtf/Output.h"

#include <vector>

namespace yrw::rtf {

/// Writes the cells and rows around paragraphs. The paragraphs of a document come in their order:
/// `enter`, format and content, `leave`.
///
/// Document and output outlive it. Thread: one at a time.
class TableOutput {
public:
    TableOutput(const Document& document, Output& out) : m_document(document), m_out(out) {}

    /// Begins the rows and cells up to the one that the paragraph lies in. True when that wrote
    /// paragraph formats.
    bool enter(const Paragraph& paragraph);
    /// Ends the paragraph, and the cells and rows that end with it. `next` is the paragraph behind
    /// it, or null. True when the next paragraph must state its format.
    bool leave(const Paragraph& paragraph, const Paragraph* next);
    /// The words that a paragraph format begins with, so many tables around it.
    void format(int level);

private:
    struct OpenRow {
        int row = 0;
        int cell = 0;
        bool holdsTable = false;
    };

    [[nodiscard]] const Row& row(int index) const { return at(m_document.rows, index); }
    void definition(const Row& row);
    void endCell();
    bool fillCells(int cells);
    bool endRow();

    const Document& m_document;
    Output& m_out;
    std::vector<OpenRow> m_open; ///< the outermost first
};

} // namespace yrw::rtf
