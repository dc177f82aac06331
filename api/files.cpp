// SPDX-License-Identifier: Apache-2.0
/*
 * Files, directories and storage, as far as a portal may ask about them.
 */
#include "api/directory_listing.h"
#include "api/text_file.h"
#include "api/vesprelv2.h"
#include "platform/log_record.h"

#include <QFileInfo>

bool VesprelV2::IsFolderExist(const QString &fileName)
{
    logRecord("IsFolderExist", "(): ", fileName);
    return QFileInfo(diskPath(fileName)).isDir();
}

bool VesprelV2::IsFileUTF8Encoded(const QString &fileName)
{
    return loggedAnswer(true, "IsFileUTF8Encoded", "(): ", fileName);
}

bool VesprelV2::IsFileExist(const QString &fileName)
{
    logRecord("IsFileExist", "(): ", fileName);
    return QFileInfo(diskPath(fileName)).isFile();
}

bool VesprelV2::SaveFile(const QString &, const QString &)
{
    // Portals are told that it worked; nothing may be written on their behalf.
    return loggedAnswer(true, "SaveFile", "():");
}

QString VesprelV2::GetSystemPaths() { return loggedAnswer(QString(), "GetSystemPaths", "():", ""); }

QString VesprelV2::GetStorageInfo(const QString &filter)
{
    logRecord("GetStorageInfo", "():", filter);
    const QString info = emit sGetStorageInfo();
    return "{\"errCode\": 0,\"errMsg\": \"\",\"result\":" + info + "}";
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
    return directoryListing(diskPath(mapped.value_or(dirName)), m_listFilesExt);
}

QString VesprelV2::ListDir(const QString &path, bool) { return ListDir(path); }
