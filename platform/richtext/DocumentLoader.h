#pragma once

#include "platform/richtext/TextParts.h"
#include "platform/richtext/TextRoom.h"
#include "platform/rtf/Model.h"

#include <QTextCursor>
#include <QTextTableFormat>

#include <optional>
#include <vector>

class QTextList;

namespace yrw::richtext {

/// Puts a document model into a text document at a cursor.
///
/// Inline groups are appended to `inlines`; the text carries their index there.
/// Thread: the user-interface thread.
class DocumentLoader {
public:
    /// `goesOn` is called before each piece of text; false ends the insertion there.
    DocumentLoader(const rtf::Document& source, std::vector<rtf::Inline>& inlines,
                   double dotsPerInch, WorkStep goesOn = {});

    /// Inserts everything at the cursor; the first paragraph keeps the block's own format when the
    /// cursor stands in text. False when `goesOn` ended it before, or when it would take more
    /// memory than a note may, as far as that can be told, or be higher than the toolkit can lay
    /// out.
    bool insert(QTextCursor& cursor);
    /// Dots that the document is high already.
    void setHeightBefore(double dots) { m_room.setHeightBefore(dots); }
    /// True when the insertion ended because of that.
    [[nodiscard]] bool isFull() const { return m_room.isFull(); }

private:
    /// A cell of the source, in so many tables; level 0 is the whole document.
    struct Cell {
        int level = 0;
        int row = -1;
        int column = 0;
        int lastColumn = 0; ///< of its table; cells further right count as that
    };

    [[nodiscard]] const QTextCharFormat& charFormat(int format);
    [[nodiscard]] const QTextBlockFormat& blockFormat(int format);
    [[nodiscard]] bool isEnded() const { return m_stopped || m_room.isFull(); }
    /// Inserts the paragraphs of a cell from `first` on; returns the paragraph behind them.
    int range(QTextCursor& cursor, int first, const Cell& cell);
    void paragraph(QTextCursor& cursor, const rtf::Paragraph& paragraph, bool newBlock);
    void runs(QTextCursor& cursor, const rtf::Paragraph& paragraph);
    [[nodiscard]] int weightOf(const rtf::Paragraph& paragraph) const;
    [[nodiscard]] bool goesOn(int paragraph);
    void run(QTextCursor& cursor, const rtf::Run& run);
    void text(QTextCursor& cursor, QStringView text, const QTextCharFormat& chars);
    void nextPiece(QTextCursor& cursor);
    void joinList(QTextCursor& cursor, const rtf::ParFormat& format);
    /// Inserts the table that begins at paragraph `first`; returns the paragraph behind it.
    int table(QTextCursor& cursor, int first, const Cell& around, bool continues);
    [[nodiscard]] QTextTableFormat tableFormat(const std::vector<int>& rows) const;
    [[nodiscard]] std::vector<int> rowsOfTable(int first, const Cell& around) const;
    [[nodiscard]] bool isIn(int paragraph, const Cell& cell) const;
    [[nodiscard]] int rowAt(int paragraph, int level) const;
    [[nodiscard]] const rtf::Paragraph& at(int paragraph) const {
        return rtf::at(m_source.paragraphs, paragraph);
    }

    const rtf::Document& m_source;
    std::vector<rtf::Inline>& m_inlines;
    double m_dotsPerInch;
    WorkStep m_goesOn;
    bool m_stopped = false;
    std::vector<std::optional<QTextCharFormat>> m_chars;
    std::vector<std::optional<QTextBlockFormat>> m_blocks;
    TextRoom m_room;
    int m_paragraph = 0; ///< that is inserted
    int m_look = 0;      ///< char format of the run
    int m_weight = 0;    ///< of the block: its characters, and what is as much work
    QTextList* m_list = nullptr;
    rtf::ParFormat m_listOf;
};

} // namespace yrw::richtext
