// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/* Times as mpv tells them, and the properties that a player of it needs to know of. */

/** Seconds to ms, 0 to what the receiver link can carry. */
int millisecondsOf(double seconds);

/** ms as a text of seconds, with three digits behind the point. */
QString secondsText(int ms);

/** Width by height of the medium, as it says itself. */
constexpr const char mediumRatioProperty[] = "video-dec-params/aspect";

constexpr const char *observedProperties[] = {"track-list", "duration", "seekable",
                                              "partially-seekable", mediumRatioProperty};
