// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/mpv_player.h"

#include "desktop/player/mpv_units.h"
#include "platform/one_line.h"

#include <utility>

namespace {

/** Whether a message of mpv's log says why a medium does not play. */
bool tellsCause(const QJsonObject &message)
{
    // A server's answer is a warning only; the error behind it says no more than that it failed.
    return message["level"].toString() != "warn" ||
           message["text"].toString().contains("HTTP error");
}

} // namespace

void MpvPlayer::handleEvent(const QJsonObject &event)
{
    const QString name = event["event"].toString();
    if (name == "start-file") {
        m_currentEntry = event["playlist_entry_id"].toInt();
        m_medium.firstError.clear(); // It was another medium's.
    } else if (name == "end-file")
        handleEndOfEntry(event);
    else if (name == "playback-restart")
        handlePlaybackRestart();
    else if (name == "property-change")
        handleProperty(event["name"].toString(), event["data"]);
    else if (name == "log-message" && m_medium.firstError.isEmpty() && tellsCause(event))
        m_medium.firstError = event["text"].toString().trimmed();
}

void MpvPlayer::handleEndOfEntry(const QJsonObject &event)
{
    if (m_medium.entry == 0 || event["playlist_entry_id"].toInt() != m_medium.entry)
        return;
    if (event["reason"].toString() == "error")
        explainFailure(event["file_error"].toString());
    else
        finish(QString());
}

void MpvPlayer::explainFailure(const QString &summary)
{
    m_patience.stop();
    // What mpv logged before it gave up comes after the event, but before the next answer.
    m_mpv->command({"get_property", "pid"}, [this, summary, play = m_play](const QJsonObject &) {
        if (play != m_play || m_state == State::Stopped)
            return;
        const QString cause = m_medium.firstError.isEmpty() ? summary : m_medium.firstError;
        finish(QString("cannot play %1: %2").arg(oneLine(m_medium.request.url), oneLine(cause)));
    });
}

void MpvPlayer::handlePlaybackRestart()
{
    if (m_medium.entry == 0 || m_currentEntry != m_medium.entry)
        return;
    if (m_state != State::Starting) {
        reportProgress(); // A seek has arrived.
        return;
    }
    // mpv tells of a property only what has changed, which may be nothing since the last medium.
    for (const char *name : observedProperties) {
        m_mpv->command({"get_property", name},
                       [this, name, play = m_play](const QJsonObject &answer) {
                           if (play == m_play && m_state != State::Stopped)
                               handleProperty(name, answer["data"]);
                       });
    }
    const auto isStarting = [this, play = m_play] {
        return play == m_play && m_state == State::Starting;
    };
    m_mpv->command({"get_property", "time-pos"}, [this, isStarting](const QJsonObject &position) {
        if (!isStarting())
            return;
        chooseTracks();
        const int positionMs = millisecondsOf(position["data"].toDouble());
        m_mpv->command({"get_property", "track-list"},
                       [this, isStarting, positionMs](const QJsonObject &answer) {
                           if (!isStarting())
                               return;
                           m_medium.tracks = answer["data"].toArray();
                           begin(positionMs);
                       });
    });
}

void MpvPlayer::begin(int positionMs)
{
    m_state = State::Playing;
    m_patience.stop();
    m_tick.start();
    const int target = std::exchange(m_medium.seekAtStartMs, -1);
    const int play = m_play;
    // Pages ask for the length when they hear of the start.
    emit progress(lengthMs(), positionMs);
    emit started();
    // Whoever hears of the start may already want something else.
    if (play != m_play || m_state == State::Stopped)
        return;
    reportTracks();
    reportProgress();
    if (target >= 0)
        seek(target);
}

void MpvPlayer::handleProperty(const QString &name, const QJsonValue &value)
{
    if (name == "track-list") {
        m_medium.tracks = value.toArray();
        reportTracks();
    } else if (name == "duration") {
        m_medium.lengthMs = millisecondsOf(value.toDouble());
    } else if (name == "partially-seekable") {
        m_medium.seeksInCacheOnly = value.toBool();
    } else if (name == "seekable") {
        m_medium.seeks = value.toBool();
    } else if (name == mediumRatioProperty) {
        m_medium.ratio = value.toDouble();
        shapePicture();
    }
}

void MpvPlayer::handleExit()
{
    emit message("mpv has gone; the next play starts it again");
    if (m_state != State::Stopped)
        finish(QString());
}

void MpvPlayer::handleSilence()
{
    // Without an answer to the command itself it is mpv that hangs, not the medium.
    if (m_medium.entry != 0)
        m_mpv->command({"stop"});
    else
        m_mpv->kill();
    finish(
        QString("cannot play %1: nothing to show within %2 s")
            .arg(oneLine(m_medium.request.url), QString::number(m_options.startPatienceMs / 1000)));
}

int MpvPlayer::lengthMs() const
{
    // What cannot be sought is live; the length that mpv then tells is how much
    // has come.
    const bool isLive = !m_medium.seeks || m_medium.seeksInCacheOnly;
    return isLive ? 0 : m_medium.lengthMs;
}

void MpvPlayer::reportTracks()
{
    if (m_state != State::Playing && m_state != State::Paused)
        return;
    m_medium.audio = TrackList::of("audio", m_medium.tracks);
    m_medium.subtitles = TrackList::of("sub", m_medium.tracks);
    const auto changed = [](auto &reported, const auto &value) {
        return std::exchange(reported, value) != value;
    };
    if (changed(m_medium.reportedAudio, m_medium.audio.json()))
        emit audioTracksChanged(m_medium.reportedAudio);
    if (changed(m_medium.reportedAudioPid, m_medium.audio.selectedPid()))
        emit audioTrackChanged(m_medium.reportedAudioPid);
    if (changed(m_medium.reportedSubtitles, m_medium.subtitles.json()))
        emit subtitleTracksChanged(m_medium.reportedSubtitles);
    if (changed(m_medium.reportedSubtitlePid, m_medium.subtitles.selectedPid()))
        emit subtitleTrackChanged(m_medium.reportedSubtitlePid);
}

void MpvPlayer::reportProgress()
{
    m_mpv->command({"get_property", "time-pos"}, [this, play = m_play](const QJsonObject &answer) {
        if (play != m_play || m_state == State::Stopped || !answer["data"].isDouble())
            return;
        const int positionMs = millisecondsOf(answer["data"].toDouble());
        emit progress(lengthMs(), positionMs);
    });
}
