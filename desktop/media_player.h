#pragma once

#include "desktop/play_request.h"

#include <QObject>
#include <QString>

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

signals:
    void started();

    /** The medium came to its end or could not be played. */
    void ended();

    /** Length and position in ms; length 0 where there is none. */
    void progress(int totalMs, int positionMs);

    /** Track lists: the text of a JSON array of objects with pid (number) and lang (codes). */
    void audioTracksChanged(const QString &list);
    void subtitleTracksChanged(const QString &list);

    void audioTrackChanged(int pid);
    void subtitleTrackChanged(int pid);
};
