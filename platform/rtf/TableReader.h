#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/Tokenizer.h"

#include <functional>
#include <utility>
#include <vector>

namespace yrw::rtf {

/// The rows and cells of a document that is read, and those of tables inside cells.
///
/// `endParagraph` ends the open paragraph in a row, by its index or -1, and a cell.
/// Thread: one at a time.
class TableReader {
public:
    TableReader(Document& document, const Builder& builder,
                std::function<void(int row, int cell)> endParagraph)
        : m_document(document), m_builder(builder), m_endParagraph(std::move(endParagraph)) {}

    /// A word of a table; `nested` tells whether it formats a row inside a cell, `tables` how many
    /// the paragraph says that it lies in. False for the end of a cell that has no place in its
    /// row any more.
    bool word(const Token& token, int value, bool nested, int tables);
    /// Ends a paragraph, and the rows that end before it.
    void endParagraph(int tables);
    /// Ends all rows.
    void finish();

private:
    /// A row whose cells are being read.
    struct OpenRow {
        int index = 0; ///< in `Document::rows`
        int cell = 0;  ///< the cell that is being read
    };

    void startRows(int level);
    void endCell(int level);
    void endRow();
    void endRows(int level);
    [[nodiscard]] bool cellWord(int level);
    void rowWord(int level);
    [[nodiscard]] int lastLevel() const;

    Document& m_document;
    const Builder& m_builder;
    std::function<void(int row, int cell)> m_endParagraph;
    Row m_row;                   ///< format of the next row, as far as it is known
    Row m_nestedRow;             ///< the same of a row inside a cell
    std::vector<OpenRow> m_open; ///< the outermost first
};

} // namespace yrw::rtf
