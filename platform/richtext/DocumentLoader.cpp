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
/// So is a longer one: the screen lays a table out at once.
constexpr int kMostRows = 200;
/// And a longer list: the screen's list goes through all its items for each new one.
constexpr int kMostItems = 200;

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

bool DocumentLoader::insert(QTextCursor& cursor) {
    prepareFormats();
    range(cursor, 0, {});
    return !m_stopped;
}

/// False once the insertion was ended.
bool DocumentLoader::goesOn(int paragraph) {
    if (m_goesOn && !m_stopped) {
        const auto percent = 100 * static_cast<std::size_t>(paragraph) / m_source.paragraphs.size();
        m_stopped = !m_goesOn(static_cast<int>(percent));
    }
    return !m_stopped;
}

/// True for a paragraph of the cell, or of a table inside it.
bool DocumentLoader::isIn(int paragraph, const Cell& cell) const {
    if (m_stopped || paragraph >= static_cast<int>(m_source.paragraphs.size())) {
        return false;
    }
    if (cell.level == 0) {
        return true;
    }
    const rtf::CellPath path = m_source.cellsOf(at(paragraph));
    if (path.depth < cell.level) {
        return false;
    }
    const rtf::CellPlace& place = path.at(cell.level - 1);
    return place.row == cell.row && std::min(place.cell, cell.lastColumn) == cell.column;
}

int DocumentLoader::range(QTextCursor& cursor, int first, const Cell& cell) {
    m_list = nullptr;
    bool newBlock = false;
    bool behindTable = false;
    int i = first;
    while (isIn(i, cell)) {
        if (m_source.depthOf(at(i).row) > cell.level) {
            // An empty block right before a table is not shown, so a real one needs a second.
            if (newBlock && cursor.block().length() == 1) {
                cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
            }
            i = table(cursor, i, cell, behindTable);
            newBlock = false;
            behindTable = true;
            continue;
        }
        if (!goesOn(i)) {
            break;
        }
        paragraph(cursor, at(i), newBlock);
        newBlock = true;
        behindTable = false;
        ++i;
    }
    m_list = nullptr;
    return i;
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
    const bool continues = m_list != nullptr && rtf::isSameList(m_listOf, format);
    if (continues && m_list->count() < kMostItems) {
        m_list->add(cursor.block());
        return;
    }
    QTextListFormat look = listFormat(format);
    if (continues) {
        look.setProperty(kContinues, true);
        if (format.list != rtf::ListKind::Bullet) {
            look.setStyle(QTextListFormat::ListStyleUndefined); // its numbers do not begin with 1
        }
    }
    m_list = cursor.createList(look);
    m_listOf = format;
}

void DocumentLoader::runs(QTextCursor& cursor, const rtf::Paragraph& paragraph) {
    const auto number = static_cast<int>(&paragraph - m_source.paragraphs.data());
    const auto first = static_cast<std::size_t>(paragraph.firstRun);
    for (auto r = first; r < first + static_cast<std::size_t>(paragraph.runCount); ++r) {
        if (!goesOn(number)) {
            return;
        }
        run(cursor, m_source.runs[r]);
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

/// The row of a table in that many others that a paragraph lies in.
int DocumentLoader::rowAt(int paragraph, int level) const {
    return m_source.cellsOf(at(paragraph)).at(level).row;
}

/// The rows of the table that begins at a paragraph.
std::vector<int> DocumentLoader::rowsOfTable(int first, const Cell& around) const {
    std::vector<int> rows;
    int columns = 0;
    int cells = 0;
    for (int i = first; isIn(i, around) && m_source.depthOf(at(i).row) > around.level; ++i) {
        const int row = rowAt(i, around.level);
        if (!rows.empty() && rows.back() == row) {
            continue;
        }
        const int edges = static_cast<int>(source(row).edges.size());
        const int wider = std::max({columns, edges, 1});
        const int count = static_cast<int>(rows.size());
        const bool sparse = wider * (count + 1) > 2 * (cells + edges) + kEmptyCells;
        if (count == kMostRows || (count > 0 && sparse)) {
            break;
        }
        columns = wider;
        cells += edges;
        rows.push_back(row);
    }
    return rows;
}

QTextTableFormat DocumentLoader::tableFormat(const std::vector<int>& rows) const {
    const rtf::Row& look = source(rows.front());
    QList<rtf::Row> asRead;
    qsizetype columns = 1;
    for (const int row : rows) {
        asRead.append(source(row));
        asRead.last().parent = -1;
        asRead.last().parentCell = 0;
        columns = std::max(columns, asRead.last().edges.size());
    }
    QTextTableFormat format;
    format.setCellPadding(pixels(look.gap, m_dotsPerInch) / 2);
    format.setCellSpacing(0);
    format.setBorderCollapse(true);
    format.setBorder(look.borders ? 1 : 0);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setLeftMargin(std::max(0.0, pixels(look.left, m_dotsPerInch)));
    QList<QTextLength> widths;
    for (int column = 0, left = look.left; column < columns; ++column) {
        const int edge = look.edges.value(column, left + 1440);
        widths.append(QTextLength(QTextLength::FixedLength,
                                  pixels(std::max(edge - left, 60), m_dotsPerInch)));
        left = std::max(edge, left);
    }
    format.setColumnWidthConstraints(widths);
    format.setProperty(kRows, QVariant::fromValue(asRead));
    return format;
}

int DocumentLoader::table(QTextCursor& cursor, int first, const Cell& around, bool continues) {
    const std::vector<int> rows = rowsOfTable(first, around);
    QTextTableFormat format = tableFormat(rows);
    if (continues) {
        format.setProperty(kContinues, true);
    }
    const auto columns = static_cast<int>(format.columnWidthConstraints().size());
    QTextTable* const table = cursor.insertTable(static_cast<int>(rows.size()), columns, format);
    int paragraph = first;
    for (int row = 0; row < table->rows(); ++row) {
        Cell cell{.level = around.level + 1,
                  .row = rows[static_cast<std::size_t>(row)],
                  .lastColumn = columns - 1};
        while (isIn(paragraph, around) && m_source.depthOf(at(paragraph).row) >= cell.level &&
               rowAt(paragraph, around.level) == cell.row) {
            const int column = m_source.cellsOf(at(paragraph)).at(around.level).cell;
            cell.column = std::min(column, cell.lastColumn);
            QTextCursor inside = table->cellAt(row, cell.column).firstCursorPosition();
            paragraph = range(inside, paragraph, cell);
        }
    }
    cursor.setPosition(table->lastPosition() + 1);
    return paragraph;
}

} // namespace yrw::richtext
