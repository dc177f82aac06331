// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "api/player_link.h"
#include "platform/portal_object.h"

#include <QJsonArray>
#include <QString>
#include <QStringList>

class VesprelV2;

/**
 * The one player. Its methods are attached by the injected script and call gSTB, which keeps the
 * playback state; the player reads it, and holds what is known of the current media.
 */
class stbPlayer : public PortalObject, public PlayerLink
{
    Q_OBJECT
    Q_PROPERTY(int state READ getState)

public:
    class capabilitiesConfig;
    class statisticsConfig;
    class audioTrackConfig;

    /** gSTB is not owned and outlives the player. */
    stbPlayer(int id, VesprelV2 *gSTB, QObject *parent = nullptr);
    ~stbPlayer() override;

    /** Promised, asked by nobody: there is one player, and its id is 0. */
    int id() const { return m_id; }

    /** gSTB's playback state: 0 stopped, 1 play requested, 2 playing, 3 paused. */
    int getState() const;

    // Promised, called by nobody: no script reaches them.
    /** Preferred languages, primary first; the first two go on to the receiver. */
    void setAudioLanguages(const QStringList &languages);
    QStringList getAudioLanguages() const;

    void OnPlayStarted() override;
    void OnPlayEnded() override;
    void OnAudioPids(const QString &list) override;
    void OnSubPids(const QString &list) override;
    void OnAudioPid(int pid) override;
    void OnSubPid(int pid) override;
    void setMediaProgress(int length, int position) override;

private:
    /** What is known of the media that plays, empty between two; kept as promised, not read. */
    struct Media
    {
        QJsonArray audioTracks;
        QString subtitleTracks;
        int started = 0;
        int audioPid = 0;
        int subtitlePid = 0;
        int length = 0;   // ms
        int position = 0; // ms
    };

    int m_id;
    VesprelV2 *m_gSTB;
    // Parts of the player that no property shows and no script reaches.
    capabilitiesConfig *m_capabilities;
    statisticsConfig *m_statistics;
    audioTrackConfig *m_audioTrack;
    QStringList m_audioLanguages;
    Media m_media;
};

/** What the player can do: everything. */
class stbPlayer::capabilitiesConfig : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(bool video READ getVideo)
    Q_PROPERTY(bool audio READ getAudio)
    Q_PROPERTY(bool subtitles READ getSub)
    Q_PROPERTY(bool teletext READ getTtx)

public:
    using PortalObject::PortalObject;

    bool getVideo() const;
    bool getAudio() const;
    bool getSub() const;
    bool getTtx() const;
};

/** Counters of stream errors; the receiver reports none, so they stay 0. */
class stbPlayer::statisticsConfig : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(int continuityErrors READ getContinuityErrors)
    Q_PROPERTY(int rtpErrors READ getRtpErrors)
    Q_PROPERTY(int decodingErrors READ getDecodingErrors)
    Q_PROPERTY(int patErrors READ getPatErrors)
    Q_PROPERTY(int pmtErrors READ getPmtErrors)
    Q_PROPERTY(int rtpDiscontinuity READ getRtpDiscontinuity)

public:
    using PortalObject::PortalObject;

    int getContinuityErrors() const;
    int getRtpErrors() const;
    int getDecodingErrors() const;
    int getPatErrors() const;
    int getPmtErrors() const;
    int getRtpDiscontinuity() const;
};

/** One audio track: PID, languages and type; empty until a portal sets one. */
class stbPlayer::audioTrackConfig : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(int pid READ getPid)
    Q_PROPERTY(QStringList lang READ getLang)
    Q_PROPERTY(int type READ getType)

public:
    using PortalObject::PortalObject;

    int getPid() const;
    QStringList getLang() const;
    int getType() const;
};
