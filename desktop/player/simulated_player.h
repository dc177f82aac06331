// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/media_player.h"
#include "desktop/player/simulated_medium.h"

#include <QTimer>

/** How fast a simulated medium plays. All in ms. */
struct SimulatedTiming
{
    int startDelay = 300;     ///< From the play command to the start.
    int tick = 1000;          ///< Between two progress reports.
    int step = 1000;          ///< By how much the position grows from one report to the next.
    int duration = 60 * 1000; ///< Length of a medium whose URL names none.
};

/**
 * A player that plays nothing: it starts, reports its progress and ends as a real one does. Every
 * medium has the same two audio and two subtitle tracks. An empty URL ends at once.
 */
class SimulatedPlayer : public MediaPlayer
{
    Q_OBJECT

public:
    explicit SimulatedPlayer(const SimulatedTiming &timing = {}, QObject *parent = nullptr);

    void play(const PlayRequest &request) override;
    void stop() override;
    void pause() override;
    void resume() override;
    void seek(int positionMs) override;
    void selectAudioTrack(int pid) override;
    void selectSubtitleTrack(int pid) override;

signals:
    /** The medium, its position, its tracks or what happens to it: whatever a picture may show. */
    void mediumChanged(const SimulatedMedium &medium);

private:
    using State = SimulatedMedium::State;

    void start();
    void tick();
    void setState(State state);
    int lastPosition() const;
    void moveTo(int positionMs);

    SimulatedTiming m_timing;
    QTimer m_startTimer;
    QTimer m_tickTimer;
    SimulatedMedium m_medium;
};
