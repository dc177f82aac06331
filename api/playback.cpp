// SPDX-License-Identifier: Apache-2.0
/*
 * Playback, seeking and position. The receiver plays; this keeps the state that the getters
 * answer from.
 */
#include "api/vesprelv2.h"
#include "platform/log_record.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr double lowestInt = std::numeric_limits<int>::min();
constexpr double highestInt = std::numeric_limits<int>::max();

int toInt(double value) { return static_cast<int>(std::clamp(value, lowestInt, highestInt)); }

int scaled(int value, int factor) { return toInt(double(value) * factor); }

/** How far position is into length, in units of which the whole holds `parts`. */
int share(int parts, int position, int length)
{
    return length == 0 ? 0 : static_cast<int>(std::int64_t{parts} * position / length);
}

} // namespace

void VesprelV2::InitPlayer()
{
    logRecord("InitPlayer", "()");
    m_playState = Stopped;
    if (m_portalLoadedSent)
        return;
    m_portalLoadedSent = true;
    emit OnPortalLoaded();
}

void VesprelV2::Play(const QString &url)
{
    logRecord("Play", "()", url);
    const QString solution = "ffmpeg ";
    m_playState = PlayRequested;
    emit OnPlay(url.startsWith(solution) ? url.mid(solution.size()) : url);
    if (m_firstPlaySent)
        return;
    emit sFirstPlay();
    m_firstPlaySent = true;
}

void VesprelV2::Play(const QString &url, const QString &proxy)
{
    logRecord("Play", "()", url, proxy);
    Play(url);
}

void VesprelV2::PlaySolution(const QString &solution, const QString &URL)
{
    logRecord("PlaySolution", "()", URL, solution);
    Play(URL);
}

void VesprelV2::PlayConfig(const QString &config)
{
    logRecord("PlayConfig", "():", config);
    const QJsonObject object = QJsonDocument::fromJson(config.toUtf8()).object();
    const int position = toInt(object.value("position").toDouble());
    // The receiver splits the position off again.
    Play(object.value("uri").toString() + " position:" + QString::number(position));
}

void VesprelV2::Stop()
{
    logRecord("Stop", "()");
    clearMedia();
    emit OnStop();
    m_playState = Stopped;
}

void VesprelV2::Pause()
{
    if (m_playState != Playing)
        return;
    logRecord("Pause", "()");
    emit OnPause();
    m_playState = Paused;
}

void VesprelV2::Continue()
{
    if (m_playState != Paused)
        return;
    logRecord("Continue", "()");
    emit OnContinue();
    m_playState = Playing;
}

bool VesprelV2::IsPlaying() { return loggedAnswer(m_playing, "IsPlaying", "()"); }

void VesprelV2::SetLoop(int loop)
{
    logRecord("SetLoop", "(): ", loop);
    m_loop = loop != 0;
}

void VesprelV2::SetPosTime(int time)
{
    logRecord("SetPosTime", "(): ", time);
    SetPosTimeEx(scaled(time, 1000));
}

void VesprelV2::SetPosTimeEx(int time)
{
    logRecord("SetPosTimeEx", "(): ", time);
    emit OnSeekTime(time);
}

void VesprelV2::SetPosPercent(int prc)
{
    logRecord("SetPosPercent", "(): ", prc);
    SetPosPercentEx(scaled(prc, 100));
}

void VesprelV2::SetPosPercentEx(int prc)
{
    logRecord("SetPosPercentEx", "(): ", prc);
    emit OnSeekPercent(prc);
}

int VesprelV2::GetPosTime() { return loggedResult(m_mediaPos / 1000, "GetPosTime", "(): "); }

int VesprelV2::GetPosTimeEx() { return loggedResult(m_mediaPos, "GetPosTimeEx", "(): "); }

int VesprelV2::GetPosPercent()
{
    return loggedResult(share(100, m_mediaPos, m_mediaLen), "GetPosPercent", "(): ");
}

int VesprelV2::GetPosPercentEx()
{
    return loggedResult(share(10000, m_mediaPos, m_mediaLen), "GetPosPercentEx", "(): ");
}

int VesprelV2::GetMediaLen() { return loggedResult(m_mediaLen / 1000, "GetMediaLen", "(): "); }

int VesprelV2::GetMediaLenEx() { return loggedResult(m_mediaLen, "GetMediaLenEx"); }
