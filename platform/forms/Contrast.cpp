#include "platform/forms/Contrast.h"

#include <algorithm>
#include <cmath>

namespace yrw {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double leastContrast(const QList<QColor>& backgrounds, const QColor& colour) {
    double least = 21;
    for (const QColor& background : backgrounds) {
        least = std::min(least, contrast(background, colour));
    }
    return least;
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor visibleOn(const QList<QColor>& backgrounds, const QColor& wanted) {
    const QColor hue = wanted.toHsl();
    QColor best = wanted;
    double most = leastContrast(backgrounds, wanted);
    for (int step = 1; step <= 100 && most < kVisibleContrast; ++step) {
        for (const double light :
             {hue.lightnessF() - step / 100.0, hue.lightnessF() + step / 100.0}) {
            QColor colour = hue;
            colour.setHslF(hue.hslHueF(), hue.hslSaturationF(),
                           static_cast<float>(std::clamp(light, 0.0, 1.0)));
            const QColor candidate = colour.toRgb();
            if (const double least = leastContrast(backgrounds, candidate); least > most) {
                most = least;
                best = candidate;
            }
        }
    }
    return best;
}

} // namespace yrw
