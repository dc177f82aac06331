// SPDX-License-Identifier: Apache-2.0
/*
 * Slots that keep what the portal tells, for other slots or for the key filter, and the portal's
 * own debug channel.
 */
#include "api/vesprelv2.h"
#include "platform/log_record.h"

void VesprelV2::ShowVirtualKeyboard()
{
    logRecord("ShowVirtualKeyboard", "()");
    emit VKeyboardOpen();
    m_vkActive = true;
}

void VesprelV2::HideVirtualKeyboard()
{
    logRecord("HideVirtualKeyboard", "()");
    emit VKeyboardClose();
    m_vkActive = false;
}

bool VesprelV2::IsVirtualKeyboardActive()
{
    return loggedResult(m_vkActive, "IsVirtualKeyboardActive", "():");
}

bool VesprelV2::IsVirtualKeyboardActiveEx()
{
    return loggedAnswer(m_vkActive, "IsVirtualKeyboardActiveEx", "():");
}

void VesprelV2::EnableVKButton(bool enable)
{
    logRecord("EnableVKButton", "():", enable);
    m_vkButton = enable;
}

void VesprelV2::StandBy(int imode)
{
    logRecord("StandBy", "():", imode);
    m_standBy = imode != 0;
}

bool VesprelV2::GetStandByStatus() { return loggedResult(m_standBy, "GetStandByStatus", "():"); }

void VesprelV2::SetTimeshiftState(int state)
{
    logRecord("SetTimeshiftState", "():", state);
    m_timeshiftState = state;
}

void VesprelV2::SetCurrPlace(const QString &place)
{
    logRecord("SetCurrPlace", "():", place);
    m_currPlace = place;
}

void VesprelV2::SetTVMenuState(int hide)
{
    m_tvMenuVisible = hide == 0;
    // The record holds the flag, not the argument: readers of the log look for the menu's state.
    logRecord("SetTVMenuState", "():", m_tvMenuVisible);
}

void VesprelV2::Debug(const QString &text) { logRecord("[Web]", text); }
