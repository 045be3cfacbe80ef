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

/// What text may have on a light background: grey on white, which is meant to recede, has 3.9.
constexpr double kEnoughContrast = 3.9;

QColor farther(const QColor& background) {
    return contrast(background, Qt::white) > contrast(background, Qt::black) ? QColor(Qt::white)
                                                                             : QColor(Qt::black);
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

QColor readableOn(const QColor& background, const QColor& wanted) {
    const QColor end = farther(background);
    const double enough = end == QColor(Qt::white) ? kReadableContrast : kEnoughContrast;
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
    return contrast(background, wanted) >= kReadableContrast ? wanted : farther(background);
}

QColor blended(const QColor& front, const QColor& back, double share) {
    const auto part = [share](int from, int to) {
        return static_cast<int>(std::lround(to + (from - to) * share));
    };
    return {part(front.red(), back.red()), part(front.green(), back.green()),
            part(front.blue(), back.blue())};
}

} // namespace yrw
