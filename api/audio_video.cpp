// SPDX-License-Identifier: Apache-2.0
/*
 * Tracks, the video window and the sound output.
 */
#include "api/vesprelv2.h"
#include "platform/log_record.h"
#include "platform/sound.h"

#include <algorithm>

void VesprelV2::openSound()
{
    if (HI_UNF_SND_Init() != 0)
        logRecord("call HI_UNF_SND_Init failed.");
    HI_UNF_SND_ATTR_S attributes = {};
    if (HI_UNF_SND_GetDefaultOpenAttr(HI_UNF_SND_0, &attributes) != 0)
        logRecord("call HI_UNF_SND_GetDefaultOpenAttr failed.");
    if (HI_UNF_SND_Open(HI_UNF_SND_0, &attributes) != 0)
        logRecord("call HI_UNF_SND_Open failed.");
}

void VesprelV2::closeSound()
{
    if (HI_UNF_SND_Close(HI_UNF_SND_0) != 0)
        logRecord("call HI_UNF_SND_Close failed.");
    if (HI_UNF_SND_DeInit() != 0)
        logRecord("call HI_UNF_SND_DeInit failed.");
}

void VesprelV2::SetVolume(int volume)
{
    logRecord("SetVolume", "(): ", volume);
    HI_UNF_SND_GAIN_ATTR_S gain = {};
    gain.bLinearMode = static_cast<HI_BOOL>(1);
    gain.s32Gain = std::min(volume, 100);
    HI_UNF_SND_SetVolume(HI_UNF_SND_0, HI_UNF_SND_OUTPUTPORT_ALL, &gain);
    m_volume = volume;
}

int VesprelV2::GetVolume()
{
    HI_UNF_SND_GAIN_ATTR_S gain = {};
    HI_UNF_SND_GetVolume(HI_UNF_SND_0, HI_UNF_SND_OUTPUTPORT_ALL, &gain);
    m_volume = gain.s32Gain;
    return loggedResult(m_volume, "GetVolume", "(): ");
}

void VesprelV2::SetMute(int mute)
{
    logRecord("SetMute", "()", mute);
    HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_0, static_cast<HI_BOOL>(mute != 0));
}

int VesprelV2::GetMute()
{
    HI_BOOL flag = {};
    HI_UNF_SND_GetAllTrackMute(HI_UNF_SND_0, &flag);
    return loggedResult(flag != 0 ? 1 : 0, "GetMute", "()");
}

void VesprelV2::SetAudioPID(int pid)
{
    logRecord("SetAudioPID", "(): ", pid);
    emit OnAudioTrack(pid);
}

void VesprelV2::SetSubtitlePID(int pid)
{
    logRecord("SetSubtitlePID", "(): ", pid);
    emit OnSubTrack(pid);
}

int VesprelV2::GetAudioPID() { return loggedResult(m_audioPid, "GetAudioPID", "():"); }

int VesprelV2::GetSubtitlePID() { return loggedResult(m_subtitlePid, "GetSubtitlePID", "():"); }

QString VesprelV2::GetAudioPIDsEx() { return GetAudioPIDs(); }

QString VesprelV2::GetAudioPIDs() { return loggedResult(m_audioPids, "GetAudioPIDs", "():"); }

QString VesprelV2::GetSubtitlePIDs()
{
    return loggedResult(m_subtitlePids, "GetSubtitlePIDs", "():");
}

void VesprelV2::SetAudioLangs(const QString &priLang, const QString &secLang)
{
    logRecord("SetAudioLangs", "():", priLang, secLang);
    emit OnAudioLangs(priLang, secLang);
}

void VesprelV2::SetSubtitleLangs(const QString &priLang, const QString &secLang)
{
    logRecord("SetSubtitleLangs", "():", priLang, secLang);
    emit OnSubLangs(priLang, secLang);
}

void VesprelV2::SetSubtitles(bool enable)
{
    logRecord("SetSubtitles", "():", enable);
    emit OnSubOnOff(enable);
}

void VesprelV2::SetViewport(int xsize, int ysize, int x, int y)
{
    logRecord("SetViewport", "():", x, y, xsize, ysize);
    emit OnViewPort(x, y, xsize, ysize);
}

void VesprelV2::SetViewportEx(int xSize, int ySize, int xPos, int yPos, int, int, int, int, bool)
{
    logRecord("SetViewportEx", "()");
    SetViewport(xSize, ySize, xPos, yPos);
}

void VesprelV2::SetPIG(int state, int scale, int x, int y)
{
    logRecord("SetPIG", "(): ", state, scale, x, y);
    if (state != 1)
        return;
    logRecord("SetPIG", ":", "Set Full Screen");
    emit OnViewPort(0, 0, 0, 0);
}

void VesprelV2::SetTopWin(int winNum)
{
    logRecord("SetTopWin", "(): ", winNum);
    m_topWin = winNum;
    if (winNum == 1)
        emit OnShowHole();
    else if (winNum == 0)
        emit OnHideHole();
}

int VesprelV2::GetTopWin() { return loggedResult(m_topWin, "GetTopWin", "(): "); }

void VesprelV2::SetAspect(int aspect)
{
    logRecord("SetAspect", "(): ", aspect);
    emit sSetAspect(aspect);
}
