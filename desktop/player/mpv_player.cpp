// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/mpv_player.h"

#include "desktop/player/language_codes.h"
#include "desktop/player/mpv_process.h"
#include "desktop/player/mpv_units.h"
#include "desktop/recordings/box_media.h"
#include "platform/one_line.h"

#include <algorithm>
#include <utility>

namespace {

/** mpv as a part of the box: nothing of the user's own, no keys, no texts over the picture. */
QStringList mpvArguments(const QStringList &added)
{
    const QStringList own = {
        "--no-config", "--no-terminal", "--idle=yes", "--keep-open=no", "--force-window=immediate",
        "--osc=no", "--osd-level=0", "--input-default-bindings=no", "--input-vo-keyboard=no",
        "--input-cursor=no", "--ytdl=no", "--load-scripts=no", "--load-stats-overlay=no",
        "--load-osd-console=no", "--load-auto-profiles=no", "--resume-playback=no",
        // A picture stays until it is stopped.
        "--image-display-duration=inf",
        // Only ffmpeg's demuxers: mpv's own open what playlists and the like
        // name, whatever it is.
        "--demuxer=lavf", "--demuxer-lavf-o=protocol_whitelist=[" + networkProtocols() + "]",
        "--stream-lavf-o=protocol_whitelist=[" + networkProtocols() + "]", "--cover-art-auto=no",
        "--audio-display=no", "--sub-auto=no", "--audio-file-auto=no", "--network-timeout=15"};
    return own + added;
}

QString allCodes(const QStringList &languages)
{
    QStringList codes;
    for (const QString &language : languages) {
        if (!language.isEmpty())
            codes += languageCodes(language);
    }
    return codes.join(',');
}

} // namespace

MpvPlayer::MpvPlayer(const MpvOptions &options, QObject *parent)
    : MpvPlayer(options,
                std::make_unique<MpvProcess>(options.program, mpvArguments(options.arguments)),
                parent)
{
}

MpvPlayer::MpvPlayer(const MpvOptions &options, std::unique_ptr<MpvChannel> mpv, QObject *parent)
    : MediaPlayer(parent)
    , m_options(options)
    , m_mpv(std::move(mpv))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(m_options.startPatienceMs);
    m_tick.setInterval(m_options.tickMs);
    connect(&m_patience, &QTimer::timeout, this, &MpvPlayer::handleSilence);
    connect(&m_tick, &QTimer::timeout, this, &MpvPlayer::reportProgress);
    connect(m_mpv.get(), &MpvChannel::eventReceived, this, &MpvPlayer::handleEvent);
    connect(m_mpv.get(), &MpvChannel::exited, this, &MpvPlayer::handleExit);
    startMpv();
}

void MpvPlayer::play(const PlayRequest &request)
{
    const bool hadAudio = m_medium.reportedAudio != noTracks;
    const bool hadSubtitles = m_medium.reportedSubtitles != noTracks;
    forgetMedium();
    m_state = State::Starting;
    m_medium.request = request;
    if (hadAudio)
        m_medium.reportedAudio = QString();
    if (hadSubtitles)
        m_medium.reportedSubtitles = QString();
    ++m_play;
    if (request.url.isEmpty()) {
        finish("cannot play: there is no address");
        return;
    }
    const MediaSource source = mediaSource(request.url);
    if (!source.refusal.isEmpty()) {
        finish(QString("cannot play %1: %2").arg(oneLine(request.url), source.refusal));
        return;
    }
    if (!startMpv()) {
        finish(QString());
        return;
    }
    m_patience.start();
    load(source.location);
}

void MpvPlayer::stop()
{
    forgetMedium();
    m_mpv->command({"stop"});
}

void MpvPlayer::pause()
{
    if (m_state != State::Playing)
        return;
    m_state = State::Paused;
    m_tick.stop();
    setProperty("pause", true);
}

void MpvPlayer::resume()
{
    if (m_state != State::Paused)
        return;
    m_state = State::Playing;
    m_tick.start();
    setProperty("pause", false);
}

void MpvPlayer::seek(int positionMs)
{
    const int target = std::max(0, positionMs);
    if (m_state == State::Starting)
        m_medium.seekAtStartMs = target;
    else if (m_state != State::Stopped)
        m_mpv->command({"seek", secondsText(target), "absolute+exact"});
}

void MpvPlayer::selectAudioTrack(int pid)
{
    if (const int number = m_medium.audio.numberOf(pid))
        setProperty("aid", number);
}

void MpvPlayer::selectSubtitleTrack(int pid)
{
    if (const int number = m_medium.subtitles.numberOf(pid))
        setProperty("sid", number);
}

void MpvPlayer::setAudioLanguages(const QStringList &languages)
{
    setLastingProperty("alang", allCodes(languages));
}

void MpvPlayer::setSubtitleLanguages(const QStringList &languages)
{
    setLastingProperty("slang", allCodes(languages));
}

void MpvPlayer::showSubtitles(bool visible)
{
    setLastingProperty("sub-visibility", visible);
    if (visible && m_medium.subtitles.selectedPid() == 0 && m_medium.subtitles.firstNumber() > 0)
        setProperty("sid", m_medium.subtitles.firstNumber());
}

void MpvPlayer::setAspect(Aspect aspect)
{
    m_aspect = aspect;
    shapePicture();
}

void MpvPlayer::shapePicture()
{
    const PictureShape shape = pictureShape(m_aspect, m_medium.ratio);
    if (shape == m_shape)
        return;
    m_shape = shape;
    const QJsonValue ratio = shape.ratio > 0.0 ? QJsonValue(shape.ratio) : QJsonValue("no");
    setLastingProperty("video-aspect-override", ratio);
    setLastingProperty("keepaspect", shape.keepsRatio);
    setLastingProperty("panscan", shape.panscan);
}

void MpvPlayer::chooseTracks()
{
    const PlayRequest &request = m_medium.request;
    const auto choose = [this](const char *property, const char *type, int pid) {
        if (const int number = TrackList::of(type, m_medium.tracks).numberOf(pid))
            setProperty(property, number);
    };
    choose("vid", "video", request.videoPid);
    choose("aid", "audio", request.audioPid);
    choose("sid", "sub", request.subtitlePid);
}

void MpvPlayer::changeVolume(int percent)
{
    m_volume = std::clamp(m_volume + percent, 0, 100);
    setLastingProperty("volume", m_volume);
}

void MpvPlayer::toggleMute()
{
    m_isMuted = !m_isMuted;
    setLastingProperty("mute", m_isMuted || m_isSilent);
}

void MpvPlayer::setSound(int percent, bool isMuted)
{
    m_volume = percent;
    m_isMuted = isMuted;
    setLastingProperty("volume", m_volume);
    setLastingProperty("mute", m_isMuted || m_isSilent);
}

void MpvPlayer::setSilent(bool isSilent)
{
    m_isSilent = isSilent;
    setLastingProperty("mute", m_isMuted || m_isSilent);
}

bool MpvPlayer::startMpv()
{
    if (m_mpv->isRunning())
        return true;
    QString failure;
    if (!m_mpv->start(&failure)) {
        emit message("cannot play: " + failure);
        return false;
    }
    m_mpv->command({"request_log_messages", "warn"});
    int observation = 0;
    for (const char *name : observedProperties)
        m_mpv->command({"observe_property", ++observation, name});
    for (auto property = m_lasting.cbegin(); property != m_lasting.cend(); ++property)
        setProperty(property.key(), property.value());
    return true;
}

void MpvPlayer::load(const QString &location)
{
    setProperty("pause", false);
    const int positionMs = m_medium.request.positionMs;
    setProperty("start", positionMs > 0 ? secondsText(positionMs) : "none");
    // The choices of the medium before would hold for this one as well.
    for (const char *choice : {"vid", "aid", "sid"})
        setProperty(choice, "auto");
    const auto noteEntry = [this, play = m_play](const QJsonObject &answer) {
        if (play != m_play || m_state != State::Starting)
            return;
        m_medium.entry = answer["data"].toObject()["playlist_entry_id"].toInt();
        if (answer["error"].toString() != "success")
            finish(QString("cannot play %1: %2")
                       .arg(oneLine(m_medium.request.url), answer["error"].toString()));
    };
    m_mpv->command({"loadfile", location, "replace"}, noteEntry);
}

void MpvPlayer::forgetMedium()
{
    m_state = State::Stopped;
    m_patience.stop();
    m_tick.stop();
    m_medium = {};
}

void MpvPlayer::finish(const QString &line)
{
    forgetMedium();
    if (!line.isEmpty())
        emit message(line);
    emit ended();
}

void MpvPlayer::setProperty(const QString &name, const QJsonValue &value)
{
    m_mpv->command({"set_property", name, value});
}

void MpvPlayer::setLastingProperty(const QString &name, const QJsonValue &value)
{
    m_lasting.insert(name, value);
    setProperty(name, value);
}
