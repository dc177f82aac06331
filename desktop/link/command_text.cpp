// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/command_text.h"

#include "desktop/link/payload.h"
#include "enigma2/messages.h"

namespace {

QString withNumber(const char *name, const QByteArray &payload, const char *unit = "")
{
    return QString("%1 %2%3").arg(name).arg(integerAt(payload, 0)).arg(unit);
}

QString withText(const char *name, const QByteArray &payload)
{
    return QString("%1 %2").arg(name, oneLine(commandText(payload))).trimmed();
}

QString viewport(const QByteArray &payload)
{
    const int x = integerAt(payload, 0);
    const int y = integerAt(payload, 1);
    const int width = integerAt(payload, 2);
    const int height = integerAt(payload, 3);
    if (x == 0 && y == 0 && width == 0 && height == 0)
        return "viewport full screen";
    return QString("viewport %1,%2 %3x%4").arg(x).arg(y).arg(width).arg(height);
}

QString subtitlesOnOff(const QByteArray &payload)
{
    return integerAt(payload, 0) != 0 ? "subtitles on" : "subtitles off";
}

QString unknown(int type, const QByteArray &payload)
{
    return QString("unknown command %1 (%2 bytes)").arg(type).arg(payload.size());
}

} // namespace

QString describeCommand(int type, const QByteArray &payload)
{
    switch (static_cast<Command>(type)) {
    case Command::MediaPlay: return withText("play", payload);
    case Command::MediaStop: return "stop";
    case Command::MediaPause: return "pause";
    case Command::MediaResume: return "resume";
    case Command::MediaSeek: return withNumber("seek", payload, " ms");
    case Command::AudioTrack: return withNumber("audio track", payload);
    case Command::AudioPrimaryLanguage: return withText("audio language 1:", payload);
    case Command::AudioSecondaryLanguage: return withText("audio language 2:", payload);
    case Command::SubtitleTrack: return withNumber("subtitle track", payload);
    case Command::SubtitlePrimaryLanguage: return withText("subtitle language 1:", payload);
    case Command::SubtitleSecondaryLanguage: return withText("subtitle language 2:", payload);
    case Command::SubtitleOnOff: return subtitlesOnOff(payload);
    case Command::VolumeUp: return "volume up";
    case Command::VolumeDown: return "volume down";
    case Command::Mute: return "mute";
    case Command::VirtualScreen: return withNumber("virtual screen", payload);
    case Command::ViewPort: return viewport(payload);
    case Command::SetAspect: return withNumber("aspect", payload);
    case Command::Reboot: return "reboot";
    case Command::GetStorageInfo: return "get storage information";
    case Command::PvrCreateTask: return withText("create recording", payload);
    case Command::PvrRemoveTask: return withText("remove recording", payload);
    case Command::PvrChangeEndTime: return withText("change end of recording", payload);
    case Command::PvrGetTaskById: return withText("get recording", payload);
    case Command::PvrGetTasksByIds: return withText("get recordings", payload);
    case Command::PvrSetMaxRecordingCount: return withText("set most recordings", payload);
    case Command::PvrGetAllTasks: return "get all recordings";
    case Command::RunApp: return withText("run application", payload);
    case Command::Standby: return "standby";
    case Command::Exit: return "exit";
    }
    return unknown(type, payload);
}
