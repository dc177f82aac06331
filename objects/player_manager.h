// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QList>
#include <QStringList>

class VesprelV2;
class stbPlayer;

/**
 * The players as newer portals reach them: exactly one, with the id 0, and a few constants. The
 * script's `list` is set on this object by the injected script.
 */
class stbPlayerManager : public PortalObject
{
    Q_OBJECT

public:
    class frameRateConfig;
    class RTSPConfig;
    Q_PROPERTY(QStringList externalProtocols READ getExternalProtocols)
    Q_PROPERTY(stbPlayerManager::frameRateConfig *autoFrameRate READ getAutoFrameRate)
    Q_PROPERTY(stbPlayerManager::RTSPConfig *RTSP READ getRTSP)

    /** Creates the player and makes it the one that gSTB passes playback events to. */
    stbPlayerManager(QObject *parent, VesprelV2 *gSTB);

    /** Deletes the player; gSTB must not be asked to pass on events any more. */
    ~stbPlayerManager() override;

    stbPlayer *firstPlayer() const { return m_players.first(); }

    QStringList getExternalProtocols() const;
    frameRateConfig *getAutoFrameRate() const;
    RTSPConfig *getRTSP() const;

private:
    VesprelV2 *m_gSTB;
    QList<stbPlayer *> m_players;
    QStringList m_externalProtocols;
    frameRateConfig *m_autoFrameRate;
    RTSPConfig *m_RTSP;
};

/** Frame rates that the output may switch to: all. */
class stbPlayerManager::frameRateConfig : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(bool fr24 MEMBER m_fr24 CONSTANT)
    Q_PROPERTY(bool fr50 MEMBER m_fr50 CONSTANT)
    Q_PROPERTY(bool fr60 MEMBER m_fr60 CONSTANT)

public:
    using PortalObject::PortalObject;

private:
    bool m_fr24 = true;
    bool m_fr50 = true;
    bool m_fr60 = true;
};

/** RTSP details; the receiver settles them itself, so portals see the plain answers. */
class stbPlayerManager::RTSPConfig : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(int type READ zero)
    Q_PROPERTY(bool keepAlive READ no)
    Q_PROPERTY(bool endByAnnounce READ no)
    Q_PROPERTY(bool endByGetParameter READ no)
    Q_PROPERTY(bool endByTimeout READ no)
    Q_PROPERTY(bool endByRTP READ no)
    Q_PROPERTY(bool useUDP READ no)
    Q_PROPERTY(bool useRTPOverRTSP READ no)
    Q_PROPERTY(bool updateDuration READ no)
    Q_PROPERTY(bool nonSmoothPause READ no)

public:
    using PortalObject::PortalObject;

private:
    int zero() const { return 0; }
    bool no() const { return false; }
};
