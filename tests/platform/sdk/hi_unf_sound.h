// SPDX-License-Identifier: Apache-2.0
/*
 * A box's sound functions in the usual types, for compiling the branch that uses its SDK. The
 * boolean is an integer, or an enumeration where SDK_BOOLEAN_IS_ENUMERATION is defined.
 */
#pragma once

typedef int HI_S32;
#ifdef SDK_BOOLEAN_IS_ENUMERATION
typedef enum { HI_FALSE = 0, HI_TRUE = 1 } HI_BOOL;
#else
typedef int HI_BOOL;
#endif

typedef enum { HI_UNF_SND_0, HI_UNF_SND_BUTT } HI_UNF_SND_E;
typedef enum {
    HI_UNF_SND_OUTPUTPORT_DAC0,
    HI_UNF_SND_OUTPUTPORT_ALL = 0x7fff
} HI_UNF_SND_OUTPUTPORT_E;
typedef struct
{
    unsigned int u32PortNum;
} HI_UNF_SND_ATTR_S;
typedef struct
{
    HI_BOOL bLinearMode;
    HI_S32 s32Gain;
} HI_UNF_SND_GAIN_ATTR_S;

#ifdef __cplusplus
extern "C" {
#endif
HI_S32 HI_UNF_SND_Init(void);
HI_S32 HI_UNF_SND_DeInit(void);
HI_S32 HI_UNF_SND_GetDefaultOpenAttr(HI_UNF_SND_E enSound, HI_UNF_SND_ATTR_S *pstAttr);
HI_S32 HI_UNF_SND_Open(HI_UNF_SND_E enSound, const HI_UNF_SND_ATTR_S *pstAttr);
HI_S32 HI_UNF_SND_Close(HI_UNF_SND_E enSound);
HI_S32 HI_UNF_SND_SetVolume(HI_UNF_SND_E enSound, HI_UNF_SND_OUTPUTPORT_E enOutPort,
                            const HI_UNF_SND_GAIN_ATTR_S *pstGain);
HI_S32 HI_UNF_SND_GetVolume(HI_UNF_SND_E enSound, HI_UNF_SND_OUTPUTPORT_E enOutPort,
                            HI_UNF_SND_GAIN_ATTR_S *pstGain);
HI_S32 HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_E enSound, HI_BOOL bMute);
HI_S32 HI_UNF_SND_GetAllTrackMute(HI_UNF_SND_E enSound, HI_BOOL *pbMute);
#ifdef __cplusplus
}
#endif
