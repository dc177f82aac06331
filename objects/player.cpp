// SPDX-License-Identifier: Apache-2.0
#include "objects/player.h"

#include "api/vesprelv2.h"
#include "platform/log_record.h"

#include <QJsonDocument>

stbPlayer::stbPlayer(int id, VesprelV2 *gSTB, QObject *parent)
    : PortalObject(parent)
    , m_id(id)
    , m_gSTB(gSTB)
    , m_capabilities(new capabilitiesConfig(this))
    , m_statistics(new statisticsConfig(this))
    , m_audioTrack(new audioTrackConfig(this))
{
    logRecord("stbPlayer", "():");
}

stbPlayer::~stbPlayer() { logRecord("~stbPlayer", "():"); }

int stbPlayer::getState() const { return loggedResult(m_gSTB->playState(), "getState", "():"); }

void stbPlayer::setAudioLanguages(const QStringList &languages)
{
    logRecord("setAudioLanguages", "():");
    m_audioLanguages = languages;
    m_gSTB->SetAudioLangs(languages.value(0), languages.value(1));
}

QStringList stbPlayer::getAudioLanguages() const
{
    return loggedAnswer(m_audioLanguages, "getAudioLanguages", "():");
}

void stbPlayer::OnPlayStarted()
{
    logRecord("OnPlayStarted", "()");
    m_media.started = 1;
}

void stbPlayer::OnPlayEnded()
{
    logRecord("OnPlayEnded", "()");
    m_media = Media();
}

void stbPlayer::OnAudioPids(const QString &list)
{
    logRecord("OnAudioPids", "():", list);
    m_media.audioTracks = QJsonDocument::fromJson(list.toUtf8()).array();
}

void stbPlayer::OnSubPids(const QString &list)
{
    logRecord("OnSubPids", "():", list);
    m_media.subtitleTracks = list;
}

void stbPlayer::OnAudioPid(int pid)
{
    logRecord("OnAudioPid", "():", pid);
    m_media.audioPid = pid;
}

void stbPlayer::OnSubPid(int pid)
{
    logRecord("OnSubPid", "():", pid);
    m_media.subtitlePid = pid;
}

void stbPlayer::setMediaProgress(int length, int position)
{
    m_media.length = length;
    m_media.position = position;
}

using Capabilities = stbPlayer::capabilitiesConfig;

bool Capabilities::getVideo() const { return loggedResult(true, "getVideo", "():"); }
bool Capabilities::getAudio() const { return loggedResult(true, "getAudio", "():"); }
bool Capabilities::getSub() const { return loggedResult(true, "getSub", "():"); }
bool Capabilities::getTtx() const { return loggedResult(true, "getTtx", "():"); }

using Statistics = stbPlayer::statisticsConfig;

int Statistics::getContinuityErrors() const
{
    return loggedResult(0, "getContinuityErrors", "():");
}
int Statistics::getRtpErrors() const { return loggedResult(0, "getRtpErrors", "():"); }
int Statistics::getDecodingErrors() const { return loggedResult(0, "getDecodingErrors", "():"); }
int Statistics::getPatErrors() const { return loggedResult(0, "getPatErrors", "():"); }
int Statistics::getPmtErrors() const { return loggedResult(0, "getPmtErrors", "():"); }
int Statistics::getRtpDiscontinuity() const
{
    return loggedResult(0, "getRtpDiscontinuity", "():");
}

using AudioTrack = stbPlayer::audioTrackConfig;

int AudioTrack::getPid() const { return loggedAnswer(0, "getPid", "():"); }
QStringList AudioTrack::getLang() const { return loggedAnswer(QStringList(), "getLang", "():"); }
int AudioTrack::getType() const { return loggedAnswer(0, "getType", "():"); }
