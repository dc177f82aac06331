// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/play_request.h"

#include <QObject>
#include <QString>
#include <QStringList>

/**
 * How a picture is fitted into the video window. The numbers are those of the
 * aspect command; of those from 16 on, the lower four bits tell the shape of
 * the TV and do not count here.
 */
enum class Aspect {
    Exploded = 0,    ///< Stretched to the whole window.
    Standard = 1,    ///< Shown as 4:3, with black bars.
    Wide = 2,        ///< Shown as 16:9, with black bars.
    Fill = 3,        ///< As exploded.
    Zoom = 4,        ///< As big.
    Fit = 0x10,      ///< As the medium says, with black bars; so it is until something
                     ///< else is asked.
    PanScan = 0x20,  ///< As big.
    Combined = 0x30, ///< Half way from fit to big.
    Big = 0x40,      ///< Enlarged until no bar is left; what does not fit is cut off.
    Optimal = 0x50,  ///< Without bars, a little stretched and a little cut off.
};

/**
 * What the receiver asks of a player, and what it hears from it. One medium at a time. Commands
 * that do not fit the state (a pause while stopped) are ignored.
 */
class MediaPlayer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Plays a medium in place of the current one, of which no end is reported. */
    virtual void play(const PlayRequest &request) = 0;

    /** Stops without reporting an end. */
    virtual void stop() = 0;

    virtual void pause() = 0;
    virtual void resume() = 0;

    /** Goes to a position in ms; beyond either end it goes to that end. */
    virtual void seek(int positionMs) = 0;

    /** Selects a track of the current medium; the change is reported when it is made. */
    virtual void selectAudioTrack(int pid) = 0;
    virtual void selectSubtitleTrack(int pid) = 0;

    // What follows may come in any state and holds for later media as well. A player without
    // pictures and sound has nothing to do here.

    /** Languages of tracks that are selected by themselves, best first; codes of 2 or 3 letters. */
    virtual void setAudioLanguages(const QStringList &) {}
    virtual void setSubtitleLanguages(const QStringList &) {}

    /** Switched on with no subtitle track selected, the first one is. */
    virtual void showSubtitles(bool) {}

    virtual void setAspect(Aspect) {}

    /** Changes the volume by some percent; it stays within 0 to 100. */
    virtual void changeVolume(int) {}

    virtual void toggleMute() {}

    /** Volume in percent and mute as the portal wants them. */
    virtual void setSound(int, bool) {}

    /** Without sound, whatever volume and mute are, until this is taken back. */
    virtual void setSilent(bool) {}

signals:
    /** Progress was reported before. */
    void started();

    /** The medium came to its end or could not be played. */
    void ended();

    /** Length and position in ms, also at once after a seek; length 0 where there
     * is none. */
    void progress(int totalMs, int positionMs);

    /**
     * Track lists: the text of a JSON array of objects with pid (number) and lang
     * (codes). An empty one is reported only to whom a list with tracks was
     * reported before.
     */
    void audioTracksChanged(const QString &list);
    void subtitleTracksChanged(const QString &list);

    /** The current track; 0 when there is none. */
    void audioTrackChanged(int pid);
    void subtitleTrackChanged(int pid);

    /** Something that a person may want to read, one line. */
    void message(const QString &line);
};
