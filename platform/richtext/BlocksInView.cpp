#include "platform/richtext/BlocksInView.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace yrw::richtext {

void eachBlockInView(const QTextDocument& document, const QRectF& view,
                     const std::function<void(const QTextBlock& block)>& look) {
    const QAbstractTextDocumentLayout& layout = *document.documentLayout();
    const int first = layout.hitTest(view.topLeft(), Qt::FuzzyHit);
    const int last = std::max(layout.hitTest(view.bottomLeft(), Qt::FuzzyHit),
                              layout.hitTest(view.bottomRight(), Qt::FuzzyHit));
    for (QTextBlock block = document.findBlock(std::max(first, 0));
         block.isValid() && block.position() <= last; block = block.next()) {
        look(block);
    }
}

} // namespace yrw::richtext
