// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

#include <cstdlib>

// What a screenshot test counts in a picture.
namespace Pixels {

// How many pixels lie within `tolerance` of `colour` in each of red, green and blue.
inline int near(const QImage& image, const QColor& colour, int tolerance)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (std::abs(c.red() - colour.red()) <= tolerance && std::abs(c.green() - colour.green()) <= tolerance
                && std::abs(c.blue() - colour.blue()) <= tolerance)
                ++n;
        }
    }
    return n;
}

} // namespace Pixels
