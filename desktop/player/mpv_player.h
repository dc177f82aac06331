// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/media_player.h"
#include "desktop/player/mpv_channel.h"
#include "desktop/player/picture_shape.h"
#include "desktop/player/track_list.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

#include <memory>

/** How an MpvPlayer runs mpv. */
struct MpvOptions
{
    QString program = "mpv";
    QStringList arguments;       ///< Added to the player's own; a video window for instance.
    int startPatienceMs = 20000; ///< A medium that shows nothing for so long cannot be played.
    int tickMs = 1000;           ///< Between two progress reports.
};

/**
 * Plays with mpv, which is started with this object and waits idle, so that a medium starts at
 * once. An mpv that has gone is started again by the next play.
 */
class MpvPlayer : public MediaPlayer
{
    Q_OBJECT

public:
    explicit MpvPlayer(const MpvOptions &options, QObject *parent = nullptr);

    /** The same with an mpv that somebody else runs. */
    MpvPlayer(const MpvOptions &options, std::unique_ptr<MpvChannel> mpv,
              QObject *parent = nullptr);

    /** Process id of mpv, 0 when it does not run. */
    qint64 processId() const { return m_mpv->processId(); }

    void play(const PlayRequest &request) override;
    void stop() override;
    void pause() override;
    void resume() override;
    void seek(int positionMs) override;
    void selectAudioTrack(int pid) override;
    void selectSubtitleTrack(int pid) override;
    void setAudioLanguages(const QStringList &languages) override;
    void setSubtitleLanguages(const QStringList &languages) override;
    void showSubtitles(bool visible) override;
    void setAspect(Aspect aspect) override;
    void changeVolume(int percent) override;
    void toggleMute() override;
    void setSound(int percent, bool isMuted) override;
    void setSilent(bool isSilent) override;

private:
    static constexpr const char *noTracks = "[]";

    enum class State { Stopped, Starting, Playing, Paused };

    /** What is known of the medium that was asked for. */
    struct Medium
    {
        int entry = 0;          ///< Its number in the playlist of mpv; 0 until mpv has told it.
        int seekAtStartMs = -1; ///< Negative: none was asked for.
        int lengthMs = 0;
        bool seeks = false;
        bool seeksInCacheOnly = false;
        QString firstError;
        PlayRequest request;
        double ratio = 0.0; ///< Width by height; 0 while unknown.
        QJsonArray tracks;  ///< As mpv tells them.
        TrackList audio;
        TrackList subtitles;
        QString reportedAudio = noTracks; ///< Null: the list of an earlier medium.
        QString reportedSubtitles = noTracks;
        int reportedAudioPid = -1;
        int reportedSubtitlePid = -1;
    };

    bool startMpv();
    void load(const QString &location);
    void chooseTracks();
    void shapePicture();
    void forgetMedium();
    void finish(const QString &line);
    void setProperty(const QString &name, const QJsonValue &value);
    void setLastingProperty(const QString &name, const QJsonValue &value);

    void handleEvent(const QJsonObject &event);
    void handleEndOfEntry(const QJsonObject &event);
    void explainFailure(const QString &summary);
    void handlePlaybackRestart();
    void begin(int positionMs);
    void handleProperty(const QString &name, const QJsonValue &value);
    void handleExit();
    void handleSilence();

    int lengthMs() const;
    void reportTracks();
    void reportProgress();

    MpvOptions m_options;
    std::unique_ptr<MpvChannel> m_mpv;
    QTimer m_patience;
    QTimer m_tick;
    QHash<QString, QJsonValue> m_lasting; ///< Survives an mpv that is started again.
    int m_volume = 100;
    bool m_isMuted = false;
    bool m_isSilent = false;
    Aspect m_aspect = Aspect::Fit;
    PictureShape m_shape;

    State m_state = State::Stopped;
    int m_play = 0; ///< Counts the plays, to tell late answers from those that count.
    int m_currentEntry = 0;
    Medium m_medium;
};
