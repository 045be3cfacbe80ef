#include "platform/richtext/DocumentLoader.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/TableLimits.h"
#include "platform/rtf/Writer.h"

#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <utility>

namespace yrw::richtext {

namespace {

/// A table much larger than its cells is cut in two, for the screen's table has all of them.
constexpr int kEmptyCells = 256;
/// So is a longer one: the screen lays a table out at once.
constexpr int kMostRows = 200;
constexpr int kMostCells = 3000;
/// And a longer list: the screen's list goes through all its items for each new one.
constexpr int kMostItems = 200;
/// A longer paragraph is shown as several blocks: the screen lays a block out at once. Runs and
/// lines are more work than their characters.
constexpr int kLongestBlock = 10000;
constexpr int kRunWeight = 9;
constexpr int kLineWeight = 9;

/// Bytes that the text document takes for each part, once it is laid out.
constexpr qint64 kBlock = 300;
constexpr qint64 kFragment = 60;
constexpr qint64 kCharacter = 4;
constexpr qint64 kFormat = 1500;
constexpr qint64 kList = 1500;
constexpr qint64 kTable = 3000;
constexpr qint64 kCell = 1500;

int weightOf(QStringView text) {
    return static_cast<int>(text.size() + kLineWeight * text.count(QChar(QChar::LineSeparator)));
}

/// How many of the characters fit into a block: up to a blank near the end of the room, if there is
/// one, and never half a pair.
qsizetype fittingLength(QStringView text, qsizetype weight) {
    qsizetype room = 0;
    while (room < text.size() && weight > 0) {
        weight -= text[room] == QChar(QChar::LineSeparator) ? 1 + kLineWeight : 1;
        ++room;
    }
    if (room == text.size()) {
        return room;
    }
    constexpr qsizetype kNear = 200;
    for (qsizetype i = room; i > std::max<qsizetype>(0, room - kNear); --i) {
        if (text[i - 1].isSpace()) {
            return i;
        }
    }
    return room > 0 && text[room].isLowSurrogate() ? room - 1 : room;
}

} // namespace

DocumentLoader::DocumentLoader(const rtf::Document& source, std::vector<rtf::Inline>& inlines,
                               double dotsPerInch, WorkStep goesOn)
    : m_source(source), m_inlines(inlines), m_dotsPerInch(dotsPerInch), m_goesOn(std::move(goesOn)),
      m_room(source, dotsPerInch) {}

const QTextCharFormat& DocumentLoader::charFormat(int format) {
    std::optional<QTextCharFormat>& made = rtf::at(m_chars, format);
    if (!made) {
        m_room.takeBytes(kFormat);
        const rtf::CharFormat& source = rtf::at(m_source.charFormats, format);
        m_room.takeFont(source);
        made = toScreen(source, rtf::at(m_source.fonts, source.font).name);
    }
    return *made;
}

const QTextBlockFormat& DocumentLoader::blockFormat(int format) {
    std::optional<QTextBlockFormat>& made = rtf::at(m_blocks, format);
    if (!made) {
        m_room.takeBytes(kFormat);
        made = toScreen(rtf::at(m_source.parFormats, format), m_dotsPerInch);
    }
    return *made;
}

bool DocumentLoader::insert(QTextCursor& cursor) {
    m_chars.resize(m_source.charFormats.size());
    m_blocks.resize(m_source.parFormats.size());
    const QVariant piece = cursor.blockFormat().property(kPiece);
    const bool goesOnBehind = goesOnBefore(cursor.block().next());
    range(cursor, 0, {});
    if (goesOnBehind && !goesOnBefore(cursor.block().next())) {
        QTextBlockFormat last; // what stood behind the cursor goes on in the next piece
        last.setProperty(kPiece, piece);
        cursor.mergeBlockFormat(last);
    }
    return !isEnded();
}

/// False once the insertion was ended.
bool DocumentLoader::goesOn(int paragraph) {
    if (m_goesOn && !isEnded()) {
        const auto count = static_cast<qint64>(m_source.paragraphs.size());
        m_stopped = !m_goesOn(static_cast<int>(100LL * paragraph / count));
    }
    return !isEnded();
}

/// True for a paragraph of the cell, or of a table inside it.
bool DocumentLoader::isIn(int paragraph, const Cell& cell) const {
    if (isEnded() || paragraph >= static_cast<int>(m_source.paragraphs.size())) {
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
    m_room.takeBytes(kBlock);
    QTextBlockFormat block = blockFormat(paragraph.format);
    const bool isLong = weightOf(paragraph) > kLongestBlock;
    if (isLong) {
        block.setProperty(kPiece, nextParagraphOfPieces());
    }
    const int mark =
        paragraph.runCount == 0
            ? paragraph.mark
            : rtf::at(m_source.runs, paragraph.firstRun + paragraph.runCount - 1).format;
    const QTextCharFormat& chars = charFormat(mark);
    if (newBlock) {
        cursor.insertBlock(block, chars);
    } else if (cursor.block().length() == 1) {
        cursor.setBlockFormat(block);
        cursor.setBlockCharFormat(chars);
    } else if (isLong && !cursor.blockFormat().hasProperty(kPiece)) {
        QTextBlockFormat piece;
        piece.setProperty(kPiece, nextParagraphOfPieces());
        cursor.mergeBlockFormat(piece);
    }
    m_weight = newBlock ? 0 : cursor.positionInBlock();
    if (!newBlock && goesOnBefore(cursor.block().next())) {
        m_weight = -weightOf(paragraph); // further pieces there have the numbers that would follow
    }
    const rtf::ParFormat& format = rtf::at(m_source.parFormats, paragraph.format);
    m_room.takeParagraph(format, rtf::at(m_source.charFormats, mark));
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
    m_room.takeBytes(kList);
    m_list = cursor.createList(look);
    m_listOf = format;
}

int DocumentLoader::weightOf(const rtf::Paragraph& paragraph) const {
    if (paragraph.runCount == 0) {
        return 0;
    }
    const int start = rtf::at(m_source.runs, paragraph.firstRun).start;
    return kRunWeight * paragraph.runCount +
           richtext::weightOf(QStringView(m_source.text).mid(start, m_source.lengthOf(paragraph)));
}

void DocumentLoader::runs(QTextCursor& cursor, const rtf::Paragraph& paragraph) {
    m_paragraph = static_cast<int>(&paragraph - m_source.paragraphs.data());
    for (int r = 0; r < paragraph.runCount; ++r) {
        if (!goesOn(m_paragraph)) {
            return;
        }
        run(cursor, rtf::at(m_source.runs, paragraph.firstRun + r));
    }
}

void DocumentLoader::run(QTextCursor& cursor, const rtf::Run& run) {
    const bool hidden = rtf::at(m_source.charFormats, run.format).hidden;
    const QStringView characters = QStringView(m_source.text).mid(run.start, run.length);
    m_room.takeBytes(kFragment + kCharacter * run.length);
    m_weight += kRunWeight;
    m_look = run.format;
    if (run.field < 0 && run.object < 0 && !hidden) {
        text(cursor, characters, charFormat(run.format));
        return;
    }
    QTextCharFormat chars = charFormat(run.format);
    if (run.field >= 0) {
        const rtf::Field& field = rtf::at(m_source.fields, run.field);
        chars.setProperty(kField, field.instruction);
        chars.setAnchor(!field.link.isEmpty());
        if (!field.link.isEmpty()) {
            chars.setAnchorHref(field.link);
        }
    }
    if (run.object >= 0 || hidden) {
        m_inlines.push_back(run.object >= 0
                                ? rtf::at(m_source.inlines, run.object)
                                : rtf::Inline{rtf::InlineKind::Kept,
                                              "{\\v " + rtf::escape(characters).toLatin1() + "}"});
        m_room.takeInline(m_inlines.back());
        chars.setObjectType(kInlineObject);
        chars.setProperty(kInlineId, static_cast<int>(m_inlines.size()) - 1);
        text(cursor, QString(QChar(rtf::kInlineMark)), chars);
        return;
    }
    text(cursor, characters, chars);
}

/// Inserts characters, in further blocks where the present one is full.
void DocumentLoader::text(QTextCursor& cursor, QStringView text, const QTextCharFormat& chars) {
    while (!text.isEmpty() && !isEnded()) {
        const qsizetype length = fittingLength(text, kLongestBlock - m_weight);
        if (length > 0) {
            m_room.takeLines(text.first(length), rtf::at(m_source.charFormats, m_look),
                             rtf::at(m_source.parFormats, at(m_paragraph).format));
            cursor.insertText(text.first(length).toString(), chars);
            m_weight += richtext::weightOf(text.first(length));
            text = text.sliced(length);
        }
        if (!text.isEmpty() && goesOn(m_paragraph)) {
            nextPiece(cursor);
        }
    }
}

void DocumentLoader::nextPiece(QTextCursor& cursor) {
    m_room.takeBytes(kBlock);
    const QTextBlockFormat before = cursor.blockFormat();
    QTextBlockFormat format = furtherPiece(before);
    if (before.hasProperty(kPiece)) {
        format.setProperty(kPiece, before.property(kPiece).toLongLong() + 1);
    }
    cursor.insertBlock(format, cursor.blockCharFormat());
    m_weight = 0;
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
    double work = 0;
    for (int i = first; isIn(i, around) && m_source.depthOf(at(i).row) > around.level; ++i) {
        const int row = rowAt(i, around.level);
        if (around.level == 0) {
            work += workOf(m_source.lengthOf(at(i)), m_source.depthOf(at(i).row) - 1);
        }
        if (!rows.empty() && rows.back() == row) {
            continue;
        }
        const int edges = static_cast<int>(rtf::at(m_source.rows, row).edges.size());
        const int wider = std::max({columns, edges, 1});
        const int count = static_cast<int>(rows.size());
        const bool sparse = wider * (count + 1) > 2 * (cells + edges) + kEmptyCells;
        const bool wide = wider * (count + 1) > kMostCells;
        if (count == kMostRows || (count > 0 && (sparse || wide || work > kMostTableWork))) {
            break;
        }
        columns = wider;
        cells += edges;
        rows.push_back(row);
    }
    return rows;
}

QTextTableFormat DocumentLoader::tableFormat(const std::vector<int>& rows) const {
    const rtf::Row& look = rtf::at(m_source.rows, rows.front());
    QList<rtf::Row> asRead;
    qsizetype columns = 1;
    for (const int row : rows) {
        asRead.append(rtf::at(m_source.rows, row));
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
    m_room.takeBytes(kTable + kCell * columns * static_cast<qint64>(rows.size()));
    QTextTable* const table = cursor.insertTable(static_cast<int>(rows.size()), columns, format);
    const double widthAround = m_room.width();
    const QList<QTextLength> widths = format.columnWidthConstraints();
    int paragraph = first;
    for (int row = 0; row < table->rows(); ++row) {
        Cell cell{.level = around.level + 1, .row = rtf::at(rows, row), .lastColumn = columns - 1};
        while (isIn(paragraph, around) && m_source.depthOf(at(paragraph).row) >= cell.level &&
               rowAt(paragraph, around.level) == cell.row) {
            const int column = m_source.cellsOf(at(paragraph)).at(around.level).cell;
            cell.column = std::min(column, cell.lastColumn);
            m_room.setWidth(std::min(widthAround, widths[cell.column].rawValue()));
            QTextCursor inside = table->cellAt(row, cell.column).firstCursorPosition();
            paragraph = range(inside, paragraph, cell);
        }
    }
    m_room.setWidth(widthAround);
    cursor.setPosition(table->lastPosition() + 1);
    return paragraph;
}

} // namespace yrw::richtext
