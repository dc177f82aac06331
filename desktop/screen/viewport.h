// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QRect>
#include <QSize>

/** Where the video shall be, in the coordinates of a virtual screen. */
struct Viewport
{
    QRect area;                           ///< All zeros are the full screen.
    int screenWidth = initialScreenWidth; ///< Width of the virtual screen, in its px.
};

/**
 * The px of a window of this size that a viewport covers, within the window. The px of the virtual
 * screen are square, as pages are enlarged by the width alone; but a screen 720 wide is 576 high
 * and fills the window. A width of 0 or less counts as the initial one. An area without width or
 * height, or outside the window, is the full window.
 */
QRect placed(const Viewport &viewport, const QSize &window);
