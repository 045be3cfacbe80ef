#include "platform/richtext/ReadableColours.h"

#include "platform/forms/Contrast.h"
#include "platform/richtext/BlocksInView.h"

#include <QTextBlock>
#include <QTextDocument>

namespace yrw::richtext {

namespace {

bool isDark(const QColor& ground) {
    return contrast(ground, Qt::white) > contrast(ground, Qt::black);
}

void addPieces(QList<QTextEdit::ExtraSelection>& pieces, const QTextBlock& block,
               const QColor& ground) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        const bool coloured = format.foreground().style() != Qt::NoBrush &&
                              format.background().style() == Qt::NoBrush;
        const QColor wanted = format.foreground().color();
        const QColor shown = coloured ? shownColour(wanted, ground) : wanted;
        if (shown == wanted) {
            continue;
        }
        QTextEdit::ExtraSelection piece;
        piece.cursor = QTextCursor(block);
        piece.cursor.setPosition(fragment.position());
        piece.cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
        piece.format.setForeground(shown);
        pieces.append(piece);
    }
}

} // namespace

QColor shownColour(const QColor& wanted, const QColor& ground) {
    return isDark(ground) ? readableOn(ground, wanted) : wanted;
}

QList<QTextEdit::ExtraSelection> readableColours(const QTextDocument& document, const QRectF& view,
                                                 const QColor& ground) {
    QList<QTextEdit::ExtraSelection> pieces;
    if (!isDark(ground)) {
        return pieces;
    }
    eachBlockInView(document, view,
                    [&](const QTextBlock& block) { addPieces(pieces, block, ground); });
    return pieces;
}

} // namespace yrw::richtext
