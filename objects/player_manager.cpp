// SPDX-License-Identifier: Apache-2.0
#include "objects/player_manager.h"

#include "api/vesprelv2.h"
#include "objects/player.h"
#include "platform/log_record.h"

stbPlayerManager::stbPlayerManager(QObject *parent, VesprelV2 *gSTB)
    : PortalObject(parent)
    , m_gSTB(gSTB)
{
    logRecord("stbPlayerManager", "():");
    m_players.append(new stbPlayer(0, m_gSTB, this));
    m_gSTB->setPlayer(firstPlayer());
    m_autoFrameRate = new frameRateConfig(this);
    m_RTSP = new RTSPConfig(this);
}

stbPlayerManager::~stbPlayerManager()
{
    logRecord("~stbPlayerManager", "():");
    m_gSTB->setPlayer(nullptr);
}

QStringList stbPlayerManager::getExternalProtocols() const
{
    return loggedAnswer(m_externalProtocols, "getExternalProtocols", "():");
}

stbPlayerManager::frameRateConfig *stbPlayerManager::getAutoFrameRate() const
{
    return loggedAnswer(m_autoFrameRate, "getAutoFrameRate", "():");
}

stbPlayerManager::RTSPConfig *stbPlayerManager::getRTSP() const
{
    return loggedAnswer(m_RTSP, "getRTSP", "():");
}
