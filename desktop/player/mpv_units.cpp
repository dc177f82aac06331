// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/mpv_units.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double secondMs = 1000.0;

} // namespace

int millisecondsOf(double seconds)
{
    const double ms = std::round(seconds * secondMs);
    return static_cast<int>(std::clamp(ms, 0.0, double(std::numeric_limits<int>::max())));
}

QString secondsText(int ms) { return QString::number(ms / secondMs, 'f', 3); }
