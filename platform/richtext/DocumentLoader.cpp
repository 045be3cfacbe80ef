#include "platform/richtext/DocumentLoader.h"

#include "platform/richtext/Formats.h"
#include "platform/rtf/Writer.h"

#include <QTextList>
#include <QTextTable>

#include <algorithm>

namespace yrw::richtext {

namespace {

/// A table much larger than its cells is cut in two, for the screen's table has all of them.
constexpr int kEmptyCells = 256;

bool sameList(const rtf::ParFormat& a, const rtf::ParFormat& b) {
    return a.list == b.list && a.listStart == b.listStart && a.listBefore == b.listBefore &&
           a.listAfter == b.listAfter && a.left == b.left;
}

} // namespace

const rtf::Paragraph& DocumentLoader::at(int paragraph) const {
    return m_source.paragraphs[static_cast<std::size_t>(paragraph)];
}

void DocumentLoader::prepareFormats() {
    m_chars.reserve(m_source.charFormats.size());
    for (const rtf::CharFormat& format : m_source.charFormats) {
        m_chars.push_back(
            toScreen(format, m_source.fonts[static_cast<std::size_t>(format.font)].name));
    }
    m_blocks.reserve(m_source.parFormats.size());
    for (const rtf::ParFormat& format : m_source.parFormats) {
        m_blocks.push_back(toScreen(format, m_dotsPerInch));
    }
}

void DocumentLoader::insert(QTextCursor& cursor) {
    prepareFormats();
    const int count = static_cast<int>(m_source.paragraphs.size());
    bool newBlock = false;
    for (int i = 0; i < count;) {
        if (at(i).row >= 0) {
            // An empty block right before a table is not shown, so a real one needs a second.
            if (newBlock && cursor.block().length() == 1) {
                cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
            }
            m_list = nullptr;
            i = table(cursor, i);
            newBlock = false;
            continue;
        }
        paragraph(cursor, at(i), newBlock);
        newBlock = true;
        ++i;
    }
}

void DocumentLoader::paragraph(QTextCursor& cursor, const rtf::Paragraph& paragraph,
                               bool newBlock) {
    const QTextBlockFormat& block = m_blocks[static_cast<std::size_t>(paragraph.format)];
    const int mark = paragraph.runCount == 0
                         ? paragraph.mark
                         : m_source
                               .runs[static_cast<std::size_t>(paragraph.firstRun) +
                                     static_cast<std::size_t>(paragraph.runCount) - 1]
                               .format;
    const QTextCharFormat& chars = m_chars[static_cast<std::size_t>(mark)];
    if (newBlock) {
        cursor.insertBlock(block, chars);
    } else if (cursor.block().length() == 1) {
        cursor.setBlockFormat(block);
        cursor.setBlockCharFormat(chars);
    }
    const rtf::ParFormat& format = m_source.parFormats[static_cast<std::size_t>(paragraph.format)];
    joinList(cursor, format);
    runs(cursor, paragraph);
}

void DocumentLoader::joinList(QTextCursor& cursor, const rtf::ParFormat& format) {
    if (format.list == rtf::ListKind::None) {
        m_list = nullptr;
        return;
    }
    if (m_list != nullptr && sameList(m_listOf, format)) {
        m_list->add(cursor.block());
        return;
    }
    m_list = cursor.createList(listFormat(format));
    m_listOf = format;
}

void DocumentLoader::runs(QTextCursor& cursor, const rtf::Paragraph& paragraph) {
    for (int r = 0; r < paragraph.runCount; ++r) {
        run(cursor,
            m_source
                .runs[static_cast<std::size_t>(paragraph.firstRun) + static_cast<std::size_t>(r)]);
    }
}

void DocumentLoader::run(QTextCursor& cursor, const rtf::Run& run) {
    const auto format = static_cast<std::size_t>(run.format);
    const bool hidden = m_source.charFormats[format].hidden;
    if (run.field < 0 && run.object < 0 && !hidden) {
        cursor.insertText(m_source.text.mid(run.start, run.length), m_chars[format]);
        return;
    }
    QTextCharFormat chars = m_chars[format];
    if (run.field >= 0) {
        const rtf::Field& field = m_source.fields[static_cast<std::size_t>(run.field)];
        chars.setProperty(kField, field.instruction);
        chars.setAnchor(!field.link.isEmpty());
        if (!field.link.isEmpty()) {
            chars.setAnchorHref(field.link);
        }
    }
    const QString text = m_source.text.mid(run.start, run.length);
    if (run.object >= 0 || hidden) {
        m_inlines.push_back(
            run.object >= 0
                ? m_source.inlines[static_cast<std::size_t>(run.object)]
                : rtf::Inline{rtf::InlineKind::Kept, "{\\v " + rtf::escape(text).toLatin1() + "}"});
        chars.setObjectType(kInlineObject);
        chars.setProperty(kInlineId, static_cast<int>(m_inlines.size()) - 1);
        cursor.insertText(QString(QChar(rtf::kInlineMark)), chars);
        return;
    }
    cursor.insertText(text, chars);
}

int DocumentLoader::rowsOfTable(int first, int& columns) const {
    int rows = 0;
    int cells = 0;
    columns = 0;
    const int count = static_cast<int>(m_source.paragraphs.size());
    for (int i = first, row = -1; i < count && at(i).row >= 0; ++i) {
        if (at(i).row == row) {
            continue;
        }
        row = at(i).row;
        const int edges =
            static_cast<int>(m_source.rows[static_cast<std::size_t>(row)].edges.size());
        const int wider = std::max({columns, edges, 1});
        if (rows > 0 && wider * (rows + 1) > 2 * (cells + edges) + kEmptyCells) {
            break;
        }
        columns = wider;
        cells += edges;
        ++rows;
    }
    return rows;
}

QList<rtf::Row> DocumentLoader::rowsAsRead(int first, int rows) const {
    QList<rtf::Row> found;
    for (int i = first, row = -1; found.size() < rows; ++i) {
        if (at(i).row != row) {
            row = at(i).row;
            found.append(m_source.rows[static_cast<std::size_t>(row)]);
        }
    }
    return found;
}

int DocumentLoader::table(QTextCursor& cursor, int first) {
    int columns = 0;
    const int rows = rowsOfTable(first, columns);
    const rtf::Row& look = m_source.rows[static_cast<std::size_t>(at(first).row)];
    QTextTableFormat format;
    format.setCellPadding(pixels(look.gap, m_dotsPerInch) / 2);
    format.setCellSpacing(0);
    format.setBorderCollapse(true);
    format.setBorder(look.borders ? 1 : 0);
    format.setLeftMargin(std::max(0.0, pixels(look.left, m_dotsPerInch)));
    QList<QTextLength> widths;
    for (int column = 0, left = look.left; column < columns; ++column) {
        const int edge = look.edges.value(column, left + 1440);
        widths.append(QTextLength(QTextLength::FixedLength,
                                  pixels(std::max(edge - left, 60), m_dotsPerInch)));
        left = std::max(edge, left);
    }
    format.setColumnWidthConstraints(widths);
    format.setProperty(kRows, QVariant::fromValue(rowsAsRead(first, rows)));
    QTextTable* const table = cursor.insertTable(rows, columns, format);
    int paragraph = first;
    for (int row = 0; row < rows; ++row) {
        paragraph = fillRow(table, row, paragraph);
    }
    cursor.setPosition(table->lastPosition() + 1);
    m_list = nullptr;
    return paragraph;
}

int DocumentLoader::fillRow(QTextTable* table, int row, int first) {
    const int count = static_cast<int>(m_source.paragraphs.size());
    const int wanted = at(first).row;
    const auto inColumn = [&](int i, int column) {
        return i < count && at(i).row == wanted &&
               std::min(at(i).cell, table->columns() - 1) == column;
    };
    int i = first;
    while (i < count && at(i).row == wanted) {
        const int column = std::min(at(i).cell, table->columns() - 1);
        QTextCursor cell = table->cellAt(row, column).firstCursorPosition();
        m_list = nullptr;
        for (bool newBlock = false; inColumn(i, column); ++i, newBlock = true) {
            paragraph(cell, at(i), newBlock);
        }
    }
    return i;
}

} // namespace yrw::richtext
