#pragma once

#include <QColor>
#include <QList>
#include <QRectF>
#include <QTextEdit>

class QTextDocument;

namespace yrw::richtext {

/// Colours of text on the screen. Notes keep the colours they were given, for they go to paper and
/// to other people's screens; on a dark ground, text of a dark colour is only painted lighter.
/// Thread: the window's.

/// The colour in which text is painted: the wanted one on a light ground or where it can be read,
/// else the same hue made lighter.
[[nodiscard]] QColor shownColour(const QColor& wanted, const QColor& ground);

/// The pieces of text in a part of a document, in its coordinates, that are painted in another
/// colour than their own; none on a light ground. Text on a ground of its own is left alone.
[[nodiscard]] QList<QTextEdit::ExtraSelection>
readableColours(const QTextDocument& document, const QRectF& view, const QColor& ground);

} // namespace yrw::richtext
