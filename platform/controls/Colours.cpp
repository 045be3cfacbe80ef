#include "platform/controls/Colours.h"

#include <algorithm>
#include <cmath>

namespace yrw {

namespace {

/// What text should have to be read with ease.
constexpr double kGoodContrast = 4.5;
/// What it may have on a light background: grey on white, which is meant to recede, has 3.9.
constexpr double kEnoughContrast = 3.9;

QColor farther(const QColor& background) {
    return contrast(background, Qt::white) > contrast(background, Qt::black) ? QColor(Qt::white)
                                                                             : QColor(Qt::black);
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor readableOn(const QColor& background, const QColor& wanted) {
    const QColor end = farther(background);
    const double enough = end == QColor(Qt::white) ? kGoodContrast : kEnoughContrast;
    if (contrast(background, wanted) >= enough) {
        return wanted;
    }
    QColor colour = wanted.toHsl();
    const double step = end == QColor(Qt::white) ? 0.05 : -0.05;
    for (double light = colour.lightnessF() + step; light > 0 && light < 1; light += step) {
        colour.setHslF(colour.hslHueF(), colour.hslSaturationF(), static_cast<float>(light));
        if (contrast(background, colour) >= enough) {
            return colour.toRgb();
        }
    }
    return end;
}

QColor textOn(const QColor& background, const QColor& wanted) {
    return contrast(background, wanted) >= kGoodContrast ? wanted : farther(background);
}

} // namespace yrw
