// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/track_list.h"

#include "desktop/player/language_codes.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

TrackList TrackList::of(const QString &type, const QJsonArray &mpvTracks)
{
    TrackList list;
    for (const QJsonValue &value : mpvTracks) {
        const QJsonObject object = value.toObject();
        if (object["type"].toString() != type)
            continue;
        Track track;
        track.number = object["id"].toInt();
        track.pid = object["src-id"].toInt();
        if (track.pid == 0 || list.hasPid(track.pid))
            track.pid = track.number;
        track.language = object["lang"].toString();
        track.selected = object["selected"].toBool();
        list.m_tracks.append(track);
    }
    return list;
}

QString TrackList::json() const
{
    QJsonArray array;
    for (const Track &track : m_tracks) {
        const QJsonArray languages = QJsonArray::fromStringList(languageCodes(track.language));
        array.append(QJsonObject{{"pid", track.pid}, {"lang", languages}});
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

int TrackList::selectedPid() const
{
    for (const Track &track : m_tracks) {
        if (track.selected)
            return track.pid;
    }
    return 0;
}

int TrackList::numberOf(int pid) const
{
    for (const Track &track : m_tracks) {
        if (track.pid == pid)
            return track.number;
    }
    return 0;
}

int TrackList::firstNumber() const { return m_tracks.isEmpty() ? 0 : m_tracks.first().number; }

bool TrackList::hasPid(int pid) const
{
    return std::any_of(m_tracks.begin(), m_tracks.end(),
                       [pid](const Track &track) { return track.pid == pid; });
}
