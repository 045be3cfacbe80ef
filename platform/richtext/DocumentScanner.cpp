#include "platform/richtext/DocumentScanner.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/Pictures.h"
#include "platform/rtf/Fields.h"

#include <QImage>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace yrw::richtext {

namespace {

/// Of the pictures of foreign text together; the rest is left out.
constexpr qint64 kMostImageDots = 32LL * 1024 * 1024;

rtf::Document emptyCopy(const rtf::Document& header) {
    rtf::Document document;
    document.colours = header.colours;
    document.kept = header.kept;
    document.codePage = header.codePage;
    document.defaultFont = header.defaultFont;
    return document;
}

int twips(double screenPixels, double dotsPerInch) {
    return static_cast<int>(std::lround(screenPixels * 1440.0 / dotsPerInch));
}

/// Edges of the columns; where the screen's table has no fixed widths, they share six inches.
rtf::Row rowOf(const QTextTable& table, double dotsPerInch) {
    const QTextTableFormat format = table.format();
    const QList<QTextLength> widths = format.columnWidthConstraints();
    rtf::Row row;
    row.left = twips(format.leftMargin(), dotsPerInch);
    row.gap = twips(format.cellPadding() * 2, dotsPerInch);
    row.borders = format.border() > 0;
    int edge = row.left;
    for (int column = 0; column < table.columns(); ++column) {
        const QTextLength width = widths.value(column);
        edge += width.type() == QTextLength::FixedLength ? twips(width.rawValue(), dotsPerInch)
                                                         : 8640 / std::max(1, table.columns());
        row.edges.append(edge);
    }
    return row;
}

bool isEmpty(const QTextTableCell& cell) {
    return cell.firstPosition() == cell.lastPosition();
}

/// The rows as they were read, each with its own cells; where the table was changed since, all take
/// the look of the screen.
QList<rtf::Row> rowsOf(const QTextTable& table, double dotsPerInch) {
    const rtf::Row look = rowOf(table, dotsPerInch);
    auto rows = table.format().property(kRows).value<QList<rtf::Row>>();
    if (rows.size() != table.rows()) {
        return QList<rtf::Row>(table.rows(), look);
    }
    for (int row = 0; row < rows.size(); ++row) {
        const qsizetype cells = rows[row].edges.size();
        bool fits = cells > 0 && cells <= table.columns();
        for (auto column = static_cast<int>(cells); fits && column < table.columns(); ++column) {
            fits = isEmpty(table.cellAt(row, column)); // the screen's table is a full rectangle
        }
        if (!fits) {
            rows[row] = look;
        }
    }
    return rows;
}

} // namespace

DocumentScanner::DocumentScanner(const rtf::Document& header,
                                 const std::vector<rtf::Inline>& inlines,
                                 const QTextCursor& insertion, double dotsPerInch)
    : m_result(emptyCopy(header)), m_builder(m_result), m_inlines(inlines), m_insertion(insertion),
      m_dotsPerInch(dotsPerInch) {
    for (const rtf::Font& font : header.fonts) {
        m_builder.addFont(font);
    }
}

rtf::Document DocumentScanner::scan(const QTextDocument& document) {
    return scan(document, 0, document.characterCount());
}

rtf::Document DocumentScanner::scan(const QTextDocument& document, int begin, int end) {
    m_document = &document;
    m_begin = begin;
    m_end = end;
    const QTextFrame* const root = document.rootFrame();
    frame(root->begin(), root->end());
    ensureParagraph();
    return std::move(m_result);
}

void DocumentScanner::ensureParagraph() {
    if (m_result.paragraphs.empty()) {
        const int format = charFormat(m_insertion.charFormat());
        m_builder.endParagraph(m_builder.parFormat(rtf::ParFormat{}), format);
    }
}

void DocumentScanner::frame(QTextFrame::iterator it, const QTextFrame::iterator& end) {
    bool behindTable = false;
    while (it != end) {
        const QTextBlock current = it.currentBlock();
        const QTextFrame* const inner = it.currentFrame();
        ++it;
        if (inner != nullptr) {
            const auto* const asTable = qobject_cast<const QTextTable*>(inner);
            const bool whole = inner->firstPosition() > m_begin && inner->lastPosition() < m_end;
            if (asTable != nullptr && m_level < rtf::kMostNested && whole) {
                table(*asTable);
                behindTable = true;
            } else {
                frame(inner->begin(), inner->end());
            }
            continue;
        }
        // An empty block right before a table is not shown and is no paragraph; but it keeps two
        // tables apart that would else be one.
        const auto* const next = it != end ? qobject_cast<QTextTable*>(it.currentFrame()) : nullptr;
        const bool beforeTable = current.length() == 1 && next != nullptr &&
                                 (!behindTable || next->format().boolProperty(kContinues));
        behindTable = false;
        const bool inside =
            current.position() < m_end && current.position() + current.length() > m_begin;
        if (inside && !beforeTable) {
            block(current);
        }
    }
}

void DocumentScanner::table(const QTextTable& table) {
    const QList<rtf::Row> looks = rowsOf(table, m_dotsPerInch);
    const rtf::CellPlace around{m_row, m_cell};
    ++m_level;
    for (int row = 0; row < table.rows(); ++row) {
        m_row = static_cast<int>(m_result.rows.size());
        m_result.rows.push_back(looks[row]);
        m_result.rows.back().parent = around.row;
        m_result.rows.back().parentCell = around.cell;
        for (int column = 0; column < looks[row].edges.size(); ++column) {
            m_cell = column;
            const QTextTableCell cell = table.cellAt(row, column);
            if (cell.row() == row && cell.column() == column) {
                frame(cell.begin(), cell.end());
            } else {
                m_builder.endParagraph(m_builder.parFormat({}), m_builder.charFormat({}), m_row,
                                       m_cell);
            }
        }
    }
    --m_level;
    m_row = around.row;
    m_cell = around.cell;
}

void DocumentScanner::block(const QTextBlock& block) {
    if (m_progress) {
        m_progress(static_cast<int>(100LL * (block.position() - m_begin) / (m_end - m_begin)));
    }
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        fragment(it.fragment());
    }
    if (!m_inPieces) {
        m_parFormat = m_builder.parFormat(fromScreen(block.blockFormat(), block.textList()));
    }
    const QTextBlock next = block.next();
    m_inPieces = next.isValid() && next.position() < m_end && goesOnBefore(next);
    if (m_inPieces) {
        return; // the paragraph goes on
    }
    int mark = 0;
    if (m_builder.paragraphIsEmpty()) {
        const bool here = !m_insertion.isNull() && m_insertion.block() == block;
        mark = charFormat(here ? m_insertion.charFormat() : block.charFormat());
    }
    m_builder.endParagraph(m_parFormat, mark, m_row, m_cell);
}

int DocumentScanner::charFormat(const QTextCharFormat& format) {
    rtf::CharFormat chars = fromScreen(format);
    const QString name = fontName(format);
    if (!name.isEmpty() || m_result.fonts.empty()) {
        chars.font = m_builder.font(name.isEmpty() ? QStringLiteral("Arial") : name);
    } else {
        chars.font = m_result.defaultFont;
    }
    return m_builder.charFormat(chars);
}

int DocumentScanner::fieldOf(const QTextCharFormat& format) {
    if (format.hasProperty(kField)) {
        return m_builder.field(rtf::fieldOf(format.property(kField).toByteArray()));
    }
    return format.isAnchor() && !format.anchorHref().isEmpty()
               ? m_builder.field(rtf::hyperlink(format.anchorHref()))
               : -1;
}

void DocumentScanner::image(const QTextImageFormat& format, int index, int field) {
    const QVariant data = m_document->resource(QTextDocument::ImageResource, QUrl(format.name()));
    if (m_imageDots > kMostImageDots) {
        return;
    }
    const auto picture = data.typeId() == QMetaType::QByteArray
                             ? decodeImage(data.toByteArray(), kMostStoredDots)
                             : data.value<QImage>();
    m_imageDots += static_cast<qint64>(picture.width()) * picture.height();
    if (!picture.isNull()) {
        m_builder.inlineGroup(rtf::InlineKind::Picture, pictureGroup(picture), index, field);
    }
}

void DocumentScanner::fragment(const QTextFragment& fragment) {
    const int from = std::max(fragment.position(), m_begin);
    const int to = std::min(fragment.position() + fragment.length(), m_end);
    if (from >= to) {
        return;
    }
    const QTextCharFormat format = fragment.charFormat();
    const auto known = m_formats.find(fragment.charFormatIndex());
    const int index = known != m_formats.end() ? known->second : charFormat(format);
    m_formats[fragment.charFormatIndex()] = index;
    const int field = fieldOf(format);
    if (format.objectType() == kInlineObject) {
        const auto id = static_cast<std::size_t>(format.intProperty(kInlineId));
        for (int i = from; i < to && id < m_inlines.size(); ++i) {
            if (fragment.text().at(i - fragment.position()) == QChar(rtf::kInlineMark)) {
                m_builder.inlineGroup(m_inlines[id].kind, m_inlines[id].raw, index, field);
            }
        }
    }
    QString text = fragment.text().mid(from - fragment.position(), to - from);
    if (format.isImageFormat()) {
        image(format.toImageFormat(), index, field);
    }
    text.remove(QChar(rtf::kInlineMark));
    m_builder.text(text, index, field);
}

} // namespace yrw::richtext
