#include "platform/richtext/ListNumbers.h"

#include "platform/richtext/BlocksInView.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/ReadableColours.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextList>

#include <algorithm>

namespace yrw::richtext {

namespace {

/// The number of items in the lists that a list goes on.
int itemsBefore(const QTextList* list) {
    int items = 0;
    while (list->format().boolProperty(kContinues)) {
        const QTextList* const before = list->item(0).previous().textList();
        if (before == nullptr || before == list) {
            break; // the user put something between them
        }
        items += before->count();
        list = before;
    }
    return items;
}

/// The number of an item that the toolkit does not number; empty for other blocks.
QString numberOf(const QTextBlock& block) {
    const QTextList* const list = block.textList();
    if (list == nullptr || list->format().style() != QTextListFormat::ListStyleUndefined) {
        return {};
    }
    const auto format = block.blockFormat().property(kParagraph).value<rtf::ParFormat>();
    return format.listBefore +
           rtf::listNumber(format.list,
                           format.listStart + itemsBefore(list) + list->itemNumber(block)) +
           format.listAfter;
}

void paintNumber(QPainter& painter, const QTextBlock& block, const QRectF& rect,
                 const QString& number, const QPalette& palette) {
    if (block.layout()->lineCount() == 0) {
        return;
    }
    const QTextCharFormat format =
        block.begin().atEnd() ? block.charFormat() : block.begin().fragment().charFormat();
    // Laid out like the text, so that it has its size on paper too.
    QTextLayout layout(number + u' ', format.font(),
                       block.document()->documentLayout()->paintDevice());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(rect.width());
    layout.endLayout();
    const QTextLine first = block.layout()->lineAt(0);
    const QPointF text = block.layout()->position() + first.naturalTextRect().topLeft();
    // Automatic text has an empty brush.
    const QBrush brush = format.foreground();
    painter.setPen(brush.style() == Qt::NoBrush
                       ? palette.color(QPalette::Text)
                       : shownColour(brush.color(), palette.color(QPalette::Base)));
    layout.draw(&painter, QPointF(text.x() - line.horizontalAdvance(),
                                  text.y() + first.ascent() - line.ascent()));
}

} // namespace

void paintListNumbers(QPainter& painter, const QTextDocument& document, const QRectF& clip,
                      const QPalette& palette) {
    eachBlockInView(document, clip, [&](const QTextBlock& block) {
        const QString number = numberOf(block);
        if (number.isEmpty()) {
            return;
        }
        const QRectF rect = document.documentLayout()->blockBoundingRect(block);
        if (rect.intersects(clip)) {
            paintNumber(painter, block, rect, number, palette);
        }
    });
}

} // namespace yrw::richtext
