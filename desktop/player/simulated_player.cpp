// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/simulated_player.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

const char audioTracks[] = R"([{"pid":4352,"lang":["eng","en"]},{"pid":4353,"lang":["deu","de"]}])";
const char subtitleTracks[] =
    R"([{"pid":4608,"lang":["eng","en"]},{"pid":4609,"lang":["fra","fr"]}])";

constexpr std::array<int, 2> audioPids = {4352, 4353};
constexpr std::array<int, 2> subtitlePids = {4608, 4609};

bool contains(const std::array<int, 2> &pids, int pid)
{
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

} // namespace

SimulatedPlayer::SimulatedPlayer(const SimulatedTiming &timing, QObject *parent)
    : MediaPlayer(parent)
    , m_timing(timing)
{
    m_startTimer.setSingleShot(true);
    m_startTimer.setInterval(m_timing.startDelay);
    m_tickTimer.setInterval(m_timing.tick);
    connect(&m_startTimer, &QTimer::timeout, this, &SimulatedPlayer::start);
    connect(&m_tickTimer, &QTimer::timeout, this, &SimulatedPlayer::tick);
}

void SimulatedPlayer::play(const PlayRequest &request)
{
    stop();
    if (request.url.isEmpty()) {
        emit ended();
        return;
    }
    m_durationMs = simulatedDurationMs(request.url, m_timing.duration);
    m_positionMs = request.positionMs;
    const auto chosen = [](const std::array<int, 2> &pids, int pid) {
        return contains(pids, pid) ? pid : pids.front();
    };
    m_audioPid = chosen(audioPids, request.audioPid);
    m_subtitlePid = chosen(subtitlePids, request.subtitlePid);
    m_state = State::Starting;
    m_startTimer.start();
}

void SimulatedPlayer::stop()
{
    m_startTimer.stop();
    m_tickTimer.stop();
    m_state = State::Stopped;
}

void SimulatedPlayer::pause()
{
    if (m_state != State::Playing)
        return;
    m_tickTimer.stop();
    m_state = State::Paused;
}

void SimulatedPlayer::resume()
{
    if (m_state != State::Paused)
        return;
    m_tickTimer.start();
    m_state = State::Playing;
}

void SimulatedPlayer::seek(int positionMs)
{
    if (m_state == State::Starting)
        m_positionMs = std::max(0, positionMs);
    else if (m_state != State::Stopped)
        moveTo(positionMs);
}

void SimulatedPlayer::selectAudioTrack(int pid)
{
    if (m_state != State::Stopped && contains(audioPids, pid))
        emit audioTrackChanged(pid);
}

void SimulatedPlayer::selectSubtitleTrack(int pid)
{
    if (m_state != State::Stopped && contains(subtitlePids, pid))
        emit subtitleTrackChanged(pid);
}

void SimulatedPlayer::start()
{
    m_state = State::Playing;
    m_tickTimer.start();
    // Pages ask for the length when they hear of the start.
    m_positionMs = std::clamp(m_positionMs, 0, lastPosition());
    emit progress(m_durationMs, m_positionMs);
    emit started();
    emit audioTracksChanged(audioTracks);
    emit audioTrackChanged(m_audioPid);
    emit subtitleTracksChanged(subtitleTracks);
    emit subtitleTrackChanged(m_subtitlePid);
    moveTo(m_positionMs);
}

void SimulatedPlayer::tick()
{
    const int room = std::numeric_limits<int>::max() - m_positionMs;
    moveTo(m_positionMs + std::min(m_timing.step, room));
}

int SimulatedPlayer::lastPosition() const
{
    return m_durationMs > 0 ? m_durationMs : std::numeric_limits<int>::max();
}

void SimulatedPlayer::moveTo(int positionMs)
{
    m_positionMs = std::clamp(positionMs, 0, lastPosition());
    const bool atEnd = m_positionMs == lastPosition();
    if (atEnd)
        stop();
    emit progress(m_durationMs, m_positionMs);
    if (atEnd)
        emit ended();
}
