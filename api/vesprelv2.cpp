// SPDX-License-Identifier: Apache-2.0
/*
 * Life of the portal object, its properties and the events that the window brings to it.
 */
#include "api/vesprelv2.h"

#include "api/text_file.h"
#include "platform/box_paths.h"
#include "platform/device_identity.h"
#include "platform/log_record.h"

#include <QNetworkInterface>

VesprelV2::VesprelV2(QObject *parent)
    : PortalObject(parent)
{
    openSound();
    const DeviceIdentity identity = DeviceIdentity::ofThisBox();
    m_serialNumber = identity.serialNumber;
    m_macAddress = identity.macAddress;
    updateNetworkConfiguration();
    readDecoderWindow();
}

VesprelV2::~VesprelV2() { closeSound(); }

void VesprelV2::updateNetworkConfiguration()
{
    if (const auto address = lastUsableAddress(QNetworkInterface::allAddresses()))
        m_ipAddress = *address;
}

void VesprelV2::readDecoderWindow()
{
    const auto read = [](const char *name) {
        return firstWordOfFile(BoxPaths::decoderFile(name)).value_or(QString());
    };
    m_origDstLeft = read("dst_left");
    m_origDstTop = read("dst_top");
    m_origDstWidth = read("dst_width");
    m_origDstHeight = read("dst_height");
}

bool VesprelV2::isBusy() const { return loggedAnswer(false, "isBusy", "()"); }

bool VesprelV2::IsEmulator() const { return loggedResult(true, "IsEmulator", "():"); }

bool VesprelV2::isInPortal() const { return loggedResult(m_vkButton, "isInPortal", "():"); }

void VesprelV2::clearMedia()
{
    m_playing = false;
    m_audioPids.clear();
    m_subtitlePids.clear();
    m_audioPid = 0;
    m_subtitlePid = 0;
    m_mediaLen = 0;
    m_mediaPos = 0;
}

void VesprelV2::OnPlayStarted()
{
    logRecord("OnPlayStarted", "()");
    m_playing = true;
    m_playState = Playing;
    if (m_player)
        m_player->OnPlayStarted();
}

void VesprelV2::OnPlayEnded()
{
    logRecord("OnPlayEnded", "()");
    clearMedia();
    m_playState = Stopped;
    if (m_player)
        m_player->OnPlayEnded();
}

void VesprelV2::OnAudioPids(const QString &list)
{
    logRecord("OnAudioPids", "():", list);
    m_audioPids = list;
    if (m_player)
        m_player->OnAudioPids(list);
}

void VesprelV2::OnSubPids(const QString &list)
{
    logRecord("OnSubPids", "():", list);
    m_subtitlePids = list;
    if (m_player)
        m_player->OnSubPids(list);
}

void VesprelV2::OnAudioPid(int pid)
{
    logRecord("OnAudioPid", "():", pid);
    m_audioPid = pid;
    if (m_player)
        m_player->OnAudioPid(pid);
}

void VesprelV2::OnSubPid(int pid)
{
    logRecord("OnSubPid", "():", pid);
    m_subtitlePid = pid;
    if (m_player)
        m_player->OnSubPid(pid);
}

void VesprelV2::setMediaProgress(int length, int position)
{
    m_mediaLen = length;
    m_mediaPos = position;
    if (m_player)
        m_player->setMediaProgress(length, position);
}
