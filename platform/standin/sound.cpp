// SPDX-License-Identifier: Apache-2.0
/*
 * Stand-in for the box's sound output where its SDK is absent: keeps gain and mute in memory.
 * Like a real device it refuses what comes out of turn: opening before the start, and everything
 * else before opening. On a desktop what it keeps is also told to what plays.
 */
#include "platform/sound.h"

#ifdef VESPREL_DESKTOP
#include "platform/desktop_sound.h"
#endif

namespace {

constexpr HI_S32 success = 0;
constexpr HI_S32 refused = -1;

struct Device
{
    bool started = false;
    bool open = false;
    HI_UNF_SND_GAIN_ATTR_S gain = {1, 100};
    HI_BOOL mute = 0;
};

Device device;

void tell()
{
#ifdef VESPREL_DESKTOP
    writeDesktopSound({device.gain.s32Gain, device.mute != 0});
#endif
}

} // namespace

HI_S32 HI_UNF_SND_Init()
{
    device.started = true;
    return success;
}

HI_S32 HI_UNF_SND_DeInit()
{
    if (!device.started || device.open)
        return refused;
    device.started = false;
    return success;
}

HI_S32 HI_UNF_SND_GetDefaultOpenAttr(HI_UNF_SND_E, HI_UNF_SND_ATTR_S *attributes)
{
    if (!device.started)
        return refused;
    attributes->outputPorts = HI_UNF_SND_OUTPUTPORT_ALL;
    return success;
}

HI_S32 HI_UNF_SND_Open(HI_UNF_SND_E, const HI_UNF_SND_ATTR_S *)
{
    if (!device.started)
        return refused;
    device.open = true;
    tell();
    return success;
}

HI_S32 HI_UNF_SND_Close(HI_UNF_SND_E)
{
    if (!device.open)
        return refused;
    device.open = false;
    return success;
}

HI_S32 HI_UNF_SND_SetVolume(HI_UNF_SND_E, HI_UNF_SND_OUTPUTPORT_E,
                            const HI_UNF_SND_GAIN_ATTR_S *gain)
{
    if (!device.open)
        return refused;
    device.gain = *gain;
    tell();
    return success;
}

HI_S32 HI_UNF_SND_GetVolume(HI_UNF_SND_E, HI_UNF_SND_OUTPUTPORT_E, HI_UNF_SND_GAIN_ATTR_S *gain)
{
    if (!device.open)
        return refused;
    *gain = device.gain;
    return success;
}

HI_S32 HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_E, HI_BOOL mute)
{
    if (!device.open)
        return refused;
    device.mute = mute;
    tell();
    return success;
}

HI_S32 HI_UNF_SND_GetAllTrackMute(HI_UNF_SND_E, HI_BOOL *mute)
{
    if (!device.open)
        return refused;
    *mute = device.mute;
    return success;
}
