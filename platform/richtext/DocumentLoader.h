#pragma once

#include "platform/rtf/Model.h"

#include <QTextCursor>

#include <vector>

class QTextList;
class QTextTable;

namespace yrw::richtext {

/// Puts a document model into a text document at a cursor.
///
/// Inline groups are appended to `inlines`; the text carries their index there.
/// Thread: the user-interface thread.
class DocumentLoader {
public:
    DocumentLoader(const rtf::Document& source, std::vector<rtf::Inline>& inlines,
                   double dotsPerInch)
        : m_source(source), m_inlines(inlines), m_dotsPerInch(dotsPerInch) {}

    /// Inserts everything at the cursor; the first paragraph keeps the block's own format when the
    /// cursor stands in text.
    void insert(QTextCursor& cursor);

private:
    void prepareFormats();
    void paragraph(QTextCursor& cursor, const rtf::Paragraph& paragraph, bool newBlock);
    void runs(QTextCursor& cursor, const rtf::Paragraph& paragraph);
    void run(QTextCursor& cursor, const rtf::Run& run);
    void joinList(QTextCursor& cursor, const rtf::ParFormat& format);
    /// Inserts the table that begins at paragraph `first`; returns the paragraph behind it.
    [[nodiscard]] QList<rtf::Row> rowsAsRead(int first, int rows) const;
    int table(QTextCursor& cursor, int first);
    int rowsOfTable(int first, int& columns) const;
    int fillRow(QTextTable* table, int row, int paragraph);
    [[nodiscard]] const rtf::Paragraph& at(int paragraph) const;

    const rtf::Document& m_source;
    std::vector<rtf::Inline>& m_inlines;
    double m_dotsPerInch;
    std::vector<QTextCharFormat> m_chars;
    std::vector<QTextBlockFormat> m_blocks;
    QTextList* m_list = nullptr;
    rtf::ParFormat m_listOf;
};

} // namespace yrw::richtext
