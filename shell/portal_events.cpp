// SPDX-License-Identifier: Apache-2.0
/*
 * Events on their way into the portal: each changes the state kept here and, for most, is told to
 * the portal by a statement.
 */
#include "api/vesprelv2.h"
#include "objects/pvr_manager.h"
#include "platform/log_record.h"
#include "shell/pages/event_statement.h"
#include "shell/keys/posted_key.h"
#include "shell/window.h"

#include <QWebView>

void Window::OnNewPortal(const QString &url)
{
    m_browserIdle = false;
    showMaximized();
    setUrl(QUrl(url, QUrl::TolerantMode));
}

void Window::OnPortalLoaded()
{
    logRecord("OnPortalLoaded");
    QWebView *view = currentView();
    if (!view)
        return;
    m_portalUrl = view->url();
    evaluate(EventStatement::portalLoaded);
}

void Window::OnFirstPlay() { evaluate(EventStatement::firstPlay); }

void Window::OnPlayStart()
{
    m_gSTB->OnPlayStarted();
    evaluate(EventStatement::playStarted);
}

void Window::OnPlayEnd()
{
    m_gSTB->OnPlayEnded();
    evaluate(EventStatement::playEnded);
}

void Window::OnPlayProgressive() { logRecord("Media Progressive"); }

void Window::OnPlayTStatus(int total, int pos) { m_gSTB->setMediaProgress(total, pos); }

void Window::OnAudioPids(const QString &list)
{
    m_gSTB->OnAudioPids(list);
    evaluate(EventStatement::audioTracksChanged);
}

void Window::OnSubPids(const QString &list)
{
    m_gSTB->OnSubPids(list);
    evaluate(EventStatement::subtitleTracksChanged);
}

void Window::OnAudioPid(int pid) { m_gSTB->OnAudioPid(pid); }

void Window::OnSubPid(int pid) { m_gSTB->OnSubPid(pid); }

void Window::OnUsbMounted()
{
    if (QWebView *view = currentView())
        postKey(view, Qt::Key_P, Qt::AltModifier);
    evaluate(EventStatement::usbMounted);
}

void Window::OnUsbUmounted()
{
    if (QWebView *view = currentView())
        postKey(view, Qt::Key_Q, Qt::AltModifier);
    evaluate(EventStatement::usbUnmounted);
}

void Window::OnPvrRecStarted(int rec_id)
{
    raiseRecordingEvent(EventStatement::Recording::Started, rec_id);
}

void Window::OnPvrRecFinished(int rec_id)
{
    raiseRecordingEvent(EventStatement::Recording::Finished, rec_id);
}

void Window::OnPvrRecError(int rec_id)
{
    raiseRecordingEvent(EventStatement::Recording::Error, rec_id);
}

void Window::raiseRecordingEvent(EventStatement::Recording code, int id)
{
    if (!currentView())
        return;
    m_pvrManager->setEventParams(EventStatement::recordingParameters(id));
    evaluate(EventStatement::recording(code));
}

void Window::OnPowerOff()
{
    logRecord("OnPowerOff", "(): ");
    m_powerOffState = true;
    if (QWebView *view = currentView())
        postKey(view, Qt::Key_F11, Qt::ControlModifier);
}

void Window::OnPowerOn()
{
    logRecord("OnPowerOn", "(): ");
    m_powerOffState = false;
}
