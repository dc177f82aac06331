// SPDX-License-Identifier: Apache-2.0
/*
 * What the box is, and what it knows of files and storage. Network answers are fixed texts.
 */
#include "api/unique_identifiers.h"
#include "api/vesprelv2.h"
#include "platform/box_paths.h"
#include "platform/log_record.h"

#include <QFileInfo>

namespace {

/** A variable that the box's start script sets, ASCII up to its first NUL; empty if unset. */
QString environment(const char *name) { return QString::fromLatin1(qgetenv(name).constData()); }

} // namespace

QString VesprelV2::Version() { return loggedResult(environment("Q_VERSION"), "Version", "():"); }

QString VesprelV2::GetUID() { return loggedResult(deviceDigest(m_macAddress), "GetUID", "():"); }

QString VesprelV2::GetUID(const QString &key)
{
    return loggedResult(keyedIdentifier(key, m_serialNumber), "GetUID", "(param):", key);
}

QString VesprelV2::GetUID(const QString &key, const QString &)
{
    return loggedResult(keyedIdentifier(key, m_serialNumber), "GetUID", "(param, param):");
}

QString VesprelV2::GetHashVersion1(const QString &type, const QString &key)
{
    return loggedResult(hashVersion1(type, key, hashSecret()), "GetHashVersion1", "(): result : ");
}

QString VesprelV2::GetDeviceSerialNumber()
{
    return loggedResult(m_serialNumber, "GetDeviceSerialNumber", "():");
}

QString VesprelV2::GetDeviceVendor() { return environment("Q_DEVICE_VENDOR"); }

QString VesprelV2::GetDeviceModel() { return environment("Q_MODEL"); }

QString VesprelV2::GetDeviceModelExt() { return environment("Q_MODEL"); }

QString VesprelV2::GetDeviceVersionHardware() { return environment("Q_HARDWARE_VERSION"); }

QString VesprelV2::GetDeviceMacAddress() { return m_macAddress; }

QString VesprelV2::GetDeviceActiveBank() { return QString(); }

QString VesprelV2::GetDefaultUpdateUrl()
{
    return loggedAnswer(QString(), "GetDefaultUpdateUrl", "()");
}

QString VesprelV2::GetDeviceImageVersion()
{
    logRecord("GetDeviceImageVersion", "()");
    return GetDeviceImageVersionCurrent();
}

QString VesprelV2::GetDeviceImageDesc()
{
    return loggedAnswer(environment("Q_IMAGE_DESCRIPTION"), "GetDeviceImageDesc", "()");
}

QString VesprelV2::GetDeviceImageVersionCurrent()
{
    return loggedAnswer(environment("Q_IMAGE_VERSION"), "GetDeviceImageVersionCurrent", "()");
}

QString VesprelV2::GetExtProtocolList()
{
    return loggedAnswer(QString("[]"), "GetExtProtocolList", "()");
}

bool VesprelV2::GetLanLinkStatus() { return true; }

bool VesprelV2::GetWifiLinkStatus() { return true; }

QString VesprelV2::GetWifiLinkStatusEx()
{
    return loggedAnswer(QString("{}"), "GetWifiLinkStatusEx", "()");
}

QString VesprelV2::GetNetworkGateways() { return "192.168.1.1"; }

QString VesprelV2::GetNetworkNameServers() { return "8.8.8.8"; }

QString VesprelV2::GetPppoeIp() { return QString(); }

QString VesprelV2::GetNetworkWifiMac() { return QString(); }

bool VesprelV2::GetPppoeLinkStatus() { return false; }

bool VesprelV2::IsFolderExist(const QString &fileName)
{
    return loggedAnswer(QFileInfo(fileName).isDir(), "IsFolderExist", "(): ", fileName);
}

bool VesprelV2::IsFileUTF8Encoded(const QString &fileName)
{
    return loggedAnswer(true, "IsFileUTF8Encoded", "(): ", fileName);
}

bool VesprelV2::IsFileExist(const QString &fileName)
{
    return loggedAnswer(QFileInfo(fileName).isFile(), "IsFileExist", "(): ", fileName);
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

void VesprelV2::LoadURL(const QString &url)
{
    logRecord("LoadURL", "()");
    if (url.startsWith(BoxPaths::localPagesUrl()))
        emit OnReboot();
}
