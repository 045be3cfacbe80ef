#pragma once

#include <QRectF>

#include <functional>

class QTextBlock;
class QTextDocument;

namespace yrw::richtext {

/// Calls `look` for each paragraph of a document that may be seen in `view` (in its pixels), front
/// to back. No other is asked for its place: to ask lays out all text up to there, or more.
void eachBlockInView(const QTextDocument& document, const QRectF& view,
                     const std::function<void(const QTextBlock& block)>& look);

} // namespace yrw::richtext
