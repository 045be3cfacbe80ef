#pragma once

#include "platform/rtf/Model.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace yrw::rtf {

/// What every written document ends in: 11 characters.
inline constexpr char kTail[] = "\r\n\\par\r\n}\r\n";

/// Writes a document as RTF: 7-bit ASCII, ending in `kTail`. A control word right before the tail
/// is followed by a blank, so that text put in the tail's place stays text.
[[nodiscard]] QByteArray write(const Document& document);

/// Text as it must stand inside RTF to be shown as typed: braces and backslashes are escaped,
/// characters beyond ASCII are written as numbers, line ends as paragraph ends.
[[nodiscard]] QString escape(QStringView text);

} // namespace yrw::rtf
