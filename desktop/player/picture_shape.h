// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/media_player.h"

/** How mpv is to draw a picture. */
struct PictureShape
{
    double ratio = 0.0;     ///< Width by height as which the picture counts; 0 is its own.
    bool keepsRatio = true; ///< Not stretched to the window.
    double panscan = 0.0;   ///< 0 shows all of the picture, 1 leaves no bar.

    bool operator==(const PictureShape &other) const
    {
        return ratio == other.ratio && keepsRatio == other.keepsRatio && panscan == other.panscan;
    }
};

/**
 * The shape that an aspect command asks for. mediumRatio is the medium's own
 * width by height, 0 as long as it is unknown. The window is taken for that of
 * a wide TV.
 */
PictureShape pictureShape(Aspect aspect, double mediumRatio);
