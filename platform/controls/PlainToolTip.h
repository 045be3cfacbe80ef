#pragma once

#include <QString>

namespace yrw {

/// A text as a tool-tip that shows it letter by letter, wrapped where it is long: what users typed
/// is not taken for markup. Empty for an empty text.
[[nodiscard]] inline QString plainToolTip(const QString& text) {
    if (text.isEmpty()) {
        return {};
    }
    QString shown = text.toHtmlEscaped();
    shown.remove(u'\r').replace(u'\n', QStringLiteral("<br>"));
    return QStringLiteral("<qt>%1</qt>").arg(shown);
}

} // namespace yrw
