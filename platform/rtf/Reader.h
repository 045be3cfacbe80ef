#pragma once

#include "platform/rtf/Model.h"

#include <QByteArrayView>
#include <QStringView>

namespace yrw::rtf {

/// True when the text begins like an RTF document.
[[nodiscard]] bool isRtf(QStringView text);

/// Reads RTF into a document. Never fails: what cannot be understood is left out or kept as it
/// is, and the document's `incomplete` tells whether the input was cut off or damaged. Input that
/// is not RTF becomes plain text (bytes are UTF-8 then). Everything after the brace that closes the
/// document is ignored.
///
/// Memory and time grow with the input's length only.
[[nodiscard]] Document read(QByteArrayView rtf);
/// The same for text whose characters are bytes; a character above U+00FF reads as itself.
[[nodiscard]] Document read(QStringView rtf);

/// A document made of plain text; lines end in CR LF, CR or LF.
[[nodiscard]] Document fromPlainText(QStringView text);

/// The text that an object's group shows in the object's place, in a document of that code page;
/// empty for one that shows a picture or nothing. Lines end in CR LF.
[[nodiscard]] QString visibleText(QByteArrayView group, int codePage);

} // namespace yrw::rtf
