#pragma once

namespace yrw {

/// Names stand-ins of like widths for the fonts that notes ask for, so that every window shows the
/// same letters where the screen lacks a font. Whoever shows such a font calls it first; done once
/// per process.
void installFontSubstitutes();

} // namespace yrw
