#pragma once

#include <QString>

namespace yrw::rtf {

/// The last part of a path with either separator, as a name that can be shown and that a file can
/// have on any system: no control, direction or invisible characters, none that a system keeps for
/// itself, no dots or blanks at its ends, no name of a device, and at most 255 bytes of UTF-8 with
/// its suffix kept. "file" when nothing is left.
[[nodiscard]] QString baseName(const QString& path);

/// A path or another text of a file as it can be shown in a line: without control, direction and
/// invisible characters, which could make it look like another.
[[nodiscard]] QString shownText(const QString& text);

} // namespace yrw::rtf
