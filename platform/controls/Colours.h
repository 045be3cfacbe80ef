#pragma once

#include "platform/forms/Contrast.h"

#include <QColor>

namespace yrw {

/// A text colour that can be read on a background: the wanted one when it can, else the same hue
/// made lighter or darker, at last white or black.
[[nodiscard]] QColor readableOn(const QColor& background, const QColor& wanted);

/// Colour of plain text on a background: the wanted one when it can be read well, else black or
/// white.
[[nodiscard]] QColor textOn(const QColor& background, const QColor& wanted);

} // namespace yrw
