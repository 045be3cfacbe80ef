#pragma once

#include <QSize>
#include <QString>

class QFontMetrics;
class QWidget;

namespace yrw {

/// Sizes of the parts of windows, by the indexes that their users know.
enum class SystemMetric : int {
    CaptionHeight = 4,
    VerticalScrollArrow = 20, ///< height of its arrows, as wide as the scroll bar
    SizingFrameWidth = 32,
};

/// A size in device-independent pixels, as the style of the application has it.
[[nodiscard]] int systemMetric(SystemMetric which);

/// The largest size, without its frame, at which a window lies whole on the work area of its
/// screen, in device-independent pixels.
[[nodiscard]] QSize roomFor(const QWidget& window);

/// A text to show at a width in pixels: a word that is wider may break anywhere (it carries
/// zero-width spaces), all else is as it was.
[[nodiscard]] QString breakable(const QString& text, const QFontMetrics& metrics, int width);

} // namespace yrw
