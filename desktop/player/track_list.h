// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonArray>
#include <QString>
#include <QVector>

/** Audio or subtitle tracks of a medium, as mpv tells them and as portals read them. */
class TrackList
{
public:
    /** Takes the tracks of one type ("audio" or "sub") from mpv's list of all tracks. */
    static TrackList of(const QString &type, const QJsonArray &mpvTracks);

    /**
     * The text of a JSON array of objects with pid and lang (an array of codes). The pid is the
     * one of the transport stream; where the medium has none, or the same twice, mpv's number.
     */
    QString json() const;

    /** The pid of the selected track, 0 when none is. */
    int selectedPid() const;

    /** mpv's number of the track of this pid, 0 when there is none. */
    int numberOf(int pid) const;

    /** mpv's number of the first track, 0 when there is none. */
    int firstNumber() const;

private:
    struct Track
    {
        int number = 0;
        int pid = 0;
        QString language;
        bool selected = false;
    };

    bool hasPid(int pid) const;

    QVector<Track> m_tracks;
};
