#pragma once

#include <QRectF>

class QPainter;
class QPalette;
class QTextDocument;

namespace yrw::richtext {

/// Paints the numbers of lists that do not begin with 1, which the toolkit's own lists cannot do:
/// those within `clip` of a document whose top left corner is the painter's origin. `colour` is
/// that of automatic text.
void paintListNumbers(QPainter& painter, const QTextDocument& document, const QRectF& clip,
                      const QPalette& palette);

} // namespace yrw::richtext
