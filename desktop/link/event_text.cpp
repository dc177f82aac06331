// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/event_text.h"

#include "desktop/link/payload.h"

namespace {

QString withNumber(const char *name, const QByteArray &payload)
{
    return QString("%1 %2").arg(name).arg(integerAt(payload, 0));
}

QString withText(const char *name, const QByteArray &payload)
{
    return QString("%1 %2").arg(name, oneLine(QString::fromUtf8(payload)));
}

QString timeStatus(const QByteArray &payload)
{
    return QString("position %1 of %2 ms").arg(integerAt(payload, 1)).arg(integerAt(payload, 0));
}

} // namespace

QString describeEvent(Event event, const QByteArray &payload)
{
    switch (event) {
    case Event::NewPortal: return QString("portal %1").arg(oneLine(QString::fromLatin1(payload)));
    case Event::PlayStart: return "play start";
    case Event::PlayEnd: return "play end";
    case Event::PlayProgressive: return "play progressive";
    case Event::PlayTimeStatus: return timeStatus(payload);
    case Event::AudioPids: return withText("audio tracks", payload);
    case Event::AudioPid: return withNumber("audio track", payload);
    case Event::SubtitlePids: return withText("subtitle tracks", payload);
    case Event::SubtitlePid: return withNumber("subtitle track", payload);
    case Event::StorageInfo: return withText("storage information", payload);
    case Event::UsbMounted: return "usb mounted";
    case Event::UsbUnmounted: return "usb unmounted";
    case Event::PvrTaskCreated: return withNumber("recording created:", payload);
    case Event::PvrTaskRemoved: return withNumber("recording removed:", payload);
    case Event::PvrEndTimeChanged: return withNumber("end of recording changed:", payload);
    case Event::PvrTaskById: return withText("recording", payload);
    case Event::PvrTasksByIds: return withText("recordings", payload);
    case Event::PvrMaxRecordingCountSet: return withNumber("most recordings set:", payload);
    case Event::PvrAllTasks: return withText("all recordings", payload);
    case Event::PvrRecordingStarted: return withNumber("recording started", payload);
    case Event::PvrRecordingFinished: return withNumber("recording finished", payload);
    case Event::PvrRecordingError: return withNumber("recording error", payload);
    case Event::PowerOff: return "power off";
    case Event::PowerOn: return "power on";
    }
    return QString("event %1").arg(static_cast<int>(event));
}
