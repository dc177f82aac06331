// SPDX-License-Identifier: Apache-2.0
/*
 * Actions of the box that a portal names, and listing a directory for its media browser.
 */
#include "api/directory_listing.h"
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
    case SystemAction::Kind::Script: runActionScript(BoxPaths::actionScript(), action); break;
    }
}

void VesprelV2::SetListFilesExt(const QString &fileExts)
{
    logRecord("SetListFilesExt", "():", fileExts);
    m_listFilesExt = fileExts;
}

QString VesprelV2::ListDir(const QString &dirName)
{
    const auto mapped = internalDiskPath(dirName);
    if (mapped)
        logRecord("ListDir", *mapped);
    return directoryListing(mapped.value_or(dirName), m_listFilesExt);
}

QString VesprelV2::ListDir(const QString &path, bool) { return ListDir(path); }
