// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What a simulated player has before it; enough to draw a picture of it. */
struct SimulatedMedium
{
    enum class State { Stopped, Starting, Playing, Paused };

    State state = State::Stopped;
    QString url;
    int durationMs = 0; ///< 0 where there is none.
    int positionMs = 0;
    int audioPid = 0;
    int subtitlePid = 0;
};
