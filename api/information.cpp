// SPDX-License-Identifier: Apache-2.0
/*
 * Who the box is, and what it says of its network: fixed texts.
 */
#include "api/unique_identifiers.h"
#include "api/vesprelv2.h"
#include "platform/environment.h"
#include "platform/log_record.h"

using Environment::textOf;

QString VesprelV2::Version()
{
    return loggedResult(textOf(Environment::version), "Version", "():");
}

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

QString VesprelV2::GetDeviceVendor() { return textOf(Environment::deviceVendor); }

QString VesprelV2::GetDeviceModel() { return textOf(Environment::model); }

QString VesprelV2::GetDeviceModelExt() { return textOf(Environment::model); }

QString VesprelV2::GetDeviceVersionHardware() { return textOf(Environment::hardwareVersion); }

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
    return loggedAnswer(textOf(Environment::imageDescription), "GetDeviceImageDesc", "()");
}

QString VesprelV2::GetDeviceImageVersionCurrent()
{
    return loggedAnswer(textOf(Environment::imageVersion), "GetDeviceImageVersionCurrent", "()");
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
