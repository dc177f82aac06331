// SPDX-License-Identifier: Apache-2.0
/*
 * The wiring table: who asks whom. Each line is one edge; requests run within the call, events of
 * the receiver come from the event loop.
 */
#include "api/vesprelv2.h"
#include "enigma2/enigma2.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "shell/dialogs/dialog_host.h"
#include "shell/keys/key_filter.h"
#include "shell/window.h"

void Window::connectReceiverEvents()
{
    // Each event of the table of messages goes to the slot that has its signal's name.
#define CONNECT_EVENT(number, name, signal, ...)                                                   \
    connect(m_enigma2, &Enigma2::signal, this, &Window::signal);
    VESPREL_EVENTS(CONNECT_EVENT)
#undef CONNECT_EVENT
}

void Window::connectPortalRequests()
{
    // clang-format off
    connect(m_gSTB, &VesprelV2::sFirstPlay,      this,      &Window::OnFirstPlay);
    connect(m_gSTB, &VesprelV2::OnPlay,          m_enigma2, &Enigma2::MediaPlay);
    connect(m_gSTB, &VesprelV2::OnStop,          m_enigma2, &Enigma2::MediaStop);
    connect(m_gSTB, &VesprelV2::OnSeekTime,      m_enigma2, &Enigma2::MediaSeek);
    connect(m_gSTB, &VesprelV2::OnPause,         m_enigma2, &Enigma2::MediaPause);
    connect(m_gSTB, &VesprelV2::OnContinue,      m_enigma2, &Enigma2::MediaResume);
    connect(m_gSTB, &VesprelV2::OnScreenMode,    m_enigma2, &Enigma2::VirtualScreen);
    connect(m_gSTB, &VesprelV2::OnViewPort,      m_enigma2, &Enigma2::ViewPort);
    connect(m_gSTB, &VesprelV2::OnAudioTrack,    m_enigma2, &Enigma2::AudioTrack);
    connect(m_gSTB, &VesprelV2::OnSubTrack,      m_enigma2, &Enigma2::SubTrack);
    connect(m_gSTB, &VesprelV2::OnAudioLangs,    m_enigma2, &Enigma2::AudioLangs);
    connect(m_gSTB, &VesprelV2::OnSubLangs,      m_enigma2, &Enigma2::SubLangs);
    connect(m_gSTB, &VesprelV2::OnSubOnOff,      m_enigma2, &Enigma2::SubOnOff);
    connect(m_gSTB, &VesprelV2::OnReboot,        m_enigma2, &Enigma2::Reboot);
    connect(m_gSTB, &VesprelV2::sGetStorageInfo, m_enigma2, &Enigma2::GetStorageInfo);
    connect(m_gSTB, &VesprelV2::sSetAspect,      m_enigma2, &Enigma2::SetAspect);
    connect(m_gSTB, &VesprelV2::VKeyboardOpen,   this,      &Window::VirtualKeyboardOpen);
    connect(m_gSTB, &VesprelV2::VKeyboardClose,  this,      &Window::VirtualKeyboardClose);
    connect(m_gSTB, &VesprelV2::OnShowHole,      this,      &Window::ShowPreviewHole);
    connect(m_gSTB, &VesprelV2::OnHideHole,      this,      &Window::HidePreviewHole);
    connect(m_gSTB, &VesprelV2::OnPortalLoaded,  this,      &Window::OnPortalLoaded);

    connect(m_pvrManager, &PvrManager::sCreateTask,         m_enigma2, &Enigma2::PvrCreateTask);
    connect(m_pvrManager, &PvrManager::sRemoveTask,         m_enigma2, &Enigma2::PvrRemoveTask);
    connect(m_pvrManager, &PvrManager::sChangeEndTime,      m_enigma2, &Enigma2::PvrChangeEndTime);
    connect(m_pvrManager, &PvrManager::sGetTaskByID,        m_enigma2, &Enigma2::PvrGetTaskByID);
    connect(m_pvrManager, &PvrManager::sGetTasksByIDs,      m_enigma2, &Enigma2::PvrGetTasksByIDs);
    connect(m_pvrManager, &PvrManager::sSetMaxRecordingCnt, m_enigma2, &Enigma2::PvrSetMaxRecordingCnt);
    connect(m_pvrManager, &PvrManager::sGetAllTasks,        m_enigma2, &Enigma2::PvrGetAllTasks);
    // clang-format on
}

void Window::connectWindowObjects()
{
    // clang-format off
    connect(m_windowManager, &stbWindowMgr::WebFavor,       this, &Window::WinOpenWebFavorites);
    connect(m_windowManager, &stbWindowMgr::GetFocusPos,    this, &Window::UpdateFocusedPos);
    connect(m_webWindow,     &stbWebWindow::OnVKey,         this, &Window::VirtualKeyboardOnKey);
    connect(m_webWindow,     &stbWebWindow::SetKeyboardPos, this, &Window::VirtualKeyboardSetPos);
    // Promised, though nothing raises it.
    connect(m_webWindow,     &stbWebWindow::VKeyboardHide,  this, &Window::VirtualKeyboardClose);
    connect(m_webWindow,     &stbWebWindow::sClose,         this, &Window::OnWebWindowClose);
    // clang-format on
}

void Window::connectKeys()
{
    // clang-format off
    connect(m_dialogs, &DialogHost::boxKey, m_keys, &KeyFilter::pressBoxKey);
    connect(m_keys, &KeyFilter::applicationRequested,     m_enigma2, &Enigma2::RunApp);
    connect(m_keys, &KeyFilter::standbyRequested,         m_enigma2, &Enigma2::Standby);
    // This request, and no other, takes the receiver back to the previous site.
    connect(m_keys, &KeyFilter::returnRequested,          m_enigma2, &Enigma2::Reboot);
    connect(m_keys, &KeyFilter::quitRequested,            this,      &Window::pwr);
    connect(m_keys, &KeyFilter::favouritesCloseRequested, this,      &Window::WinCloseWebFavorites);
    // clang-format on
}
