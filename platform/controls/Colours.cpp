#include "platform/controls/Colours.h"

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

} // namespace

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
