// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/picture_shape.h"

#include <cmath>

namespace {

constexpr double standardRatio = 4.0 / 3.0;
constexpr double wideRatio = 16.0 / 9.0;
constexpr int modeMask = 0xf0;

} // namespace

PictureShape pictureShape(Aspect aspect, double mediumRatio)
{
    const int number = static_cast<int>(aspect);
    const int mode = number > int(Aspect::Zoom) ? number & modeMask : number;
    switch (static_cast<Aspect>(mode)) {
    case Aspect::Exploded:
    case Aspect::Fill: return {0.0, false, 0.0};
    case Aspect::Standard: return {standardRatio, true, 0.0};
    case Aspect::Wide: return {wideRatio, true, 0.0};
    case Aspect::Zoom:
    case Aspect::PanScan:
    case Aspect::Big: return {0.0, true, 1.0};
    case Aspect::Combined: return {0.0, true, 0.5};
    case Aspect::Optimal:
        return {mediumRatio > 0.0 ? std::sqrt(mediumRatio * wideRatio) : 0.0, true, 1.0};
    case Aspect::Fit: break;
    }
    return {};
}
