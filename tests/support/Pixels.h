#pragma once

#include "platform/forms/Contrast.h"

#include <QImage>

namespace yrw::test {

/// How many pixels of an image are of a kind: `isOne` is asked of each one's colour.
template <class IsOne>
int pixelsOf(const QImage& image, IsOne isOne) {
    int found = 0;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        found += isOne(image.pixelColor(i % image.width(), i / image.width())) ? 1 : 0;
    }
    return found;
}

/// True when a pixel has at least that contrast with the colour that it lies on.
inline bool isSeen(const QImage& image, const QColor& on, double least) {
    return pixelsOf(image, [&](const QColor& pixel) { return contrast(pixel, on) >= least; }) > 0;
}

} // namespace yrw::test
