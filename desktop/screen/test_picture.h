// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/simulated_medium.h"
#include "desktop/screen/video_plane.h"

#include <QElapsedTimer>
#include <QTimer>

/**
 * What a simulated medium looks like: colour bars, the medium's name, times and tracks, and a light
 * that runs while the medium plays and stands while it is paused. Black while nothing plays.
 */
class TestPicture : public BlackWindow
{
    Q_OBJECT

public:
    TestPicture();

    /** Shows this medium from now on; its time goes on by itself until the next call. */
    void setMedium(const SimulatedMedium &medium);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int shownMs() const;
    QRect lightTrack() const;
    void advance();

    SimulatedMedium m_medium;
    QElapsedTimer m_sinceChange;
    QTimer m_frames;
};
