// SPDX-License-Identifier: Apache-2.0
/*
 * Playback, seeking and position. The receiver plays; this keeps the state that the getters
 * answer from.
 */
#include "api/play_text.h"
#include "api/vesprelv2.h"
#include "platform/log_record.h"

#include <cstdint>

namespace {

int scaled(int value, int factor) { return clampedInt(double(value) * factor); }

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
    Play(configuredPlayText(config));
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
