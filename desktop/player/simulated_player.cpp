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
    m_medium.url = request.url;
    m_medium.durationMs = simulatedDurationMs(request.url, m_timing.duration);
    m_medium.positionMs = request.positionMs;
    const auto chosen = [](const std::array<int, 2> &pids, int pid) {
        return contains(pids, pid) ? pid : pids.front();
    };
    m_medium.audioPid = chosen(audioPids, request.audioPid);
    m_medium.subtitlePid = chosen(subtitlePids, request.subtitlePid);
    setState(State::Starting);
    m_startTimer.start();
}

void SimulatedPlayer::stop()
{
    m_startTimer.stop();
    m_tickTimer.stop();
    setState(State::Stopped);
}

void SimulatedPlayer::pause()
{
    if (m_medium.state != State::Playing)
        return;
    m_tickTimer.stop();
    setState(State::Paused);
}

void SimulatedPlayer::resume()
{
    if (m_medium.state != State::Paused)
        return;
    m_tickTimer.start();
    setState(State::Playing);
}

void SimulatedPlayer::seek(int positionMs)
{
    if (m_medium.state == State::Starting)
        m_medium.positionMs = std::max(0, positionMs);
    else if (m_medium.state != State::Stopped)
        moveTo(positionMs);
}

void SimulatedPlayer::selectAudioTrack(int pid)
{
    if (m_medium.state == State::Stopped || !contains(audioPids, pid))
        return;
    m_medium.audioPid = pid;
    emit mediumChanged(m_medium);
    emit audioTrackChanged(pid);
}

void SimulatedPlayer::selectSubtitleTrack(int pid)
{
    if (m_medium.state == State::Stopped || !contains(subtitlePids, pid))
        return;
    m_medium.subtitlePid = pid;
    emit mediumChanged(m_medium);
    emit subtitleTrackChanged(pid);
}

void SimulatedPlayer::start()
{
    m_tickTimer.start();
    // Pages ask for the length when they hear of the start.
    m_medium.positionMs = std::clamp(m_medium.positionMs, 0, lastPosition());
    setState(State::Playing);
    emit progress(m_medium.durationMs, m_medium.positionMs);
    emit started();
    emit audioTracksChanged(audioTracks);
    emit audioTrackChanged(m_medium.audioPid);
    emit subtitleTracksChanged(subtitleTracks);
    emit subtitleTrackChanged(m_medium.subtitlePid);
    moveTo(m_medium.positionMs);
}

void SimulatedPlayer::tick()
{
    const int room = std::numeric_limits<int>::max() - m_medium.positionMs;
    moveTo(m_medium.positionMs + std::min(m_timing.step, room));
}

void SimulatedPlayer::setState(State state)
{
    m_medium.state = state;
    emit mediumChanged(m_medium);
}

int SimulatedPlayer::lastPosition() const
{
    return m_medium.durationMs > 0 ? m_medium.durationMs : std::numeric_limits<int>::max();
}

void SimulatedPlayer::moveTo(int positionMs)
{
    m_medium.positionMs = std::clamp(positionMs, 0, lastPosition());
    const bool atEnd = m_medium.positionMs == lastPosition();
    if (atEnd)
        stop();
    else
        emit mediumChanged(m_medium);
    emit progress(m_medium.durationMs, m_medium.positionMs);
    if (atEnd)
        emit ended();
}
