// SPDX-License-Identifier: Apache-2.0
#pragma once

/*
 * The box's sound output: the functions of its SDK that the portal interface calls. Device 0 is
 * the only one; gain is linear, 0 to 100. Every function returns 0 on success.
 */

#ifdef VESPREL_HISILICON_SDK

#include <hi_unf_sound.h>

#else

#include <cstdint>

using HI_S32 = std::int32_t;
using HI_BOOL = std::int32_t;

enum HI_UNF_SND_E { HI_UNF_SND_0 = 0 };
enum HI_UNF_SND_OUTPUTPORT_E { HI_UNF_SND_OUTPUTPORT_ALL = 0x7fff };

struct HI_UNF_SND_ATTR_S
{
    HI_S32 outputPorts;
};

struct HI_UNF_SND_GAIN_ATTR_S
{
    HI_BOOL bLinearMode;
    HI_S32 s32Gain;
};

extern "C" {
HI_S32 HI_UNF_SND_Init();
HI_S32 HI_UNF_SND_DeInit();
HI_S32 HI_UNF_SND_GetDefaultOpenAttr(HI_UNF_SND_E sound, HI_UNF_SND_ATTR_S *attributes);
HI_S32 HI_UNF_SND_Open(HI_UNF_SND_E sound, const HI_UNF_SND_ATTR_S *attributes);
HI_S32 HI_UNF_SND_Close(HI_UNF_SND_E sound);
HI_S32 HI_UNF_SND_SetVolume(HI_UNF_SND_E sound, HI_UNF_SND_OUTPUTPORT_E port,
                            const HI_UNF_SND_GAIN_ATTR_S *gain);
HI_S32 HI_UNF_SND_GetVolume(HI_UNF_SND_E sound, HI_UNF_SND_OUTPUTPORT_E port,
                            HI_UNF_SND_GAIN_ATTR_S *gain);
HI_S32 HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_E sound, HI_BOOL mute);
HI_S32 HI_UNF_SND_GetAllTrackMute(HI_UNF_SND_E sound, HI_BOOL *mute);
}

#endif
