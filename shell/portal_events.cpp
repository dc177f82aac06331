// SPDX-License-Identifier: Apache-2.0
/*
 * Events on their way into the portal: each changes the state kept here and, for most, is told to
 * the portal by a statement.
 */
#include "api/vesprelv2.h"
#include "objects/pvr_manager.h"
#include "platform/log_record.h"
#include "shell/dialogs/dialog_host.h"
#include "shell/keys/posted_key.h"
#include "shell/pages/page_stack.h"
#include "shell/pages/page_statement.h"
#include "shell/window.h"

#include <QWebView>

void Window::OnPortalLoaded()
{
    logRecord("OnPortalLoaded");
    m_pages->markPortal();
    m_pages->evaluate(PageStatement::portalLoaded);
}

void Window::OnFirstPlay() { m_pages->evaluate(PageStatement::firstPlay); }

void Window::OnPlayStart()
{
    m_gSTB->OnPlayStarted();
    m_pages->evaluate(PageStatement::playStarted);
}

void Window::OnPlayEnd()
{
    m_gSTB->OnPlayEnded();
    m_pages->evaluate(PageStatement::playEnded);
}

void Window::OnPlayProgressive() { logRecord("Media Progressive"); }

void Window::OnPlayTStatus(int total, int pos) { m_gSTB->setMediaProgress(total, pos); }

void Window::OnAudioPids(const QString &list)
{
    m_gSTB->OnAudioPids(list);
    m_pages->evaluate(PageStatement::audioTracksChanged);
}

void Window::OnSubPids(const QString &list)
{
    m_gSTB->OnSubPids(list);
    m_pages->evaluate(PageStatement::subtitleTracksChanged);
}

void Window::OnAudioPid(int pid) { m_gSTB->OnAudioPid(pid); }

void Window::OnSubPid(int pid) { m_gSTB->OnSubPid(pid); }

void Window::OnUsbMounted()
{
    postEventKey(Qt::Key_P, Qt::AltModifier);
    m_pages->evaluate(PageStatement::usbMounted);
}

void Window::OnUsbUmounted()
{
    postEventKey(Qt::Key_Q, Qt::AltModifier);
    m_pages->evaluate(PageStatement::usbUnmounted);
}

void Window::OnPvrRecStarted(int rec_id)
{
    raiseRecordingEvent(PageStatement::Recording::Started, rec_id);
}

void Window::OnPvrRecFinished(int rec_id)
{
    raiseRecordingEvent(PageStatement::Recording::Finished, rec_id);
}

void Window::OnPvrRecError(int rec_id)
{
    raiseRecordingEvent(PageStatement::Recording::Error, rec_id);
}

void Window::raiseRecordingEvent(PageStatement::Recording code, int id)
{
    if (!m_pages->currentView())
        return;
    m_pvrManager->setEventParams(PageStatement::recordingParameters(id));
    m_pages->evaluate(PageStatement::recording(code));
}

void Window::OnPowerOff()
{
    logRecord("OnPowerOff", "(): ");
    m_browser.setPoweredOff(true);
    m_dialogs->setStandby(true);
    postEventKey(Qt::Key_F11, Qt::ControlModifier);
}

void Window::OnPowerOn()
{
    logRecord("OnPowerOn", "(): ");
    m_browser.setPoweredOff(false);
    m_dialogs->setStandby(false);
    loadBarePage();
}

void Window::postEventKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (QWebView *view = m_pages->currentView())
        postKey(view, key, modifiers);
}
