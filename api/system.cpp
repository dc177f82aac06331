// SPDX-License-Identifier: Apache-2.0
/*
 * Actions of the box that a portal names, and the way back to the box's local pages.
 */
#include "api/system_action.h"
#include "api/vesprelv2.h"
#include "platform/box_paths.h"
#include "platform/log_record.h"

void VesprelV2::ExecAction(const QString &action)
{
    logRecord("ExecAction", "():", action);
    const SystemAction parsed = parseSystemAction(action);
    switch (parsed.kind) {
    case SystemAction::Kind::ScreenMode:
        logRecord("ExecAction", "():", "graphicres", parsed.screenModeText);
        emit OnScreenMode(parsed.screenMode);
        break;
    case SystemAction::Kind::Ignored: break;
    case SystemAction::Kind::Reboot: emit OnReboot(); break;
    case SystemAction::Kind::Script:
        runActionScript(shellWord(BoxPaths::actionScript()), action);
        break;
    }
}

void VesprelV2::LoadURL(const QString &url)
{
    logRecord("LoadURL", "()");
    // No page is loaded: the receiver takes the box back to its local pages.
    if (url.startsWith(BoxPaths::localPagesUrl()))
        emit OnReboot();
}
