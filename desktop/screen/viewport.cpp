// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/viewport.h"

#include <QRectF>

namespace {

constexpr int standardWidth = 720;
constexpr double standardHeight = 576.0;

} // namespace

QRect placed(const Viewport &viewport, const QSize &window)
{
    const QRect whole(QPoint(0, 0), window);
    if (viewport.area.isEmpty())
        return whole;
    const int width = viewport.screenWidth > 0 ? viewport.screenWidth : initialScreenWidth;
    const double horizontal = window.width() / double(width);
    const double vertical = width == standardWidth ? window.height() / standardHeight : horizontal;
    const QRectF scaled(viewport.area.x() * horizontal, viewport.area.y() * vertical,
                        viewport.area.width() * horizontal, viewport.area.height() * vertical);
    // Cut to the window first: an area may lie farther away than a whole number of px can tell.
    const QRect visible = (scaled & QRectF(whole)).toRect();
    return visible.isEmpty() ? whole : visible;
}
