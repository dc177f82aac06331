// SPDX-License-Identifier: Apache-2.0
#include "desktop/traffic/replayer.h"

#include "desktop/link/payload.h"

#include <QFile>

#include <algorithm>
#include <limits>

Replayer::Replayer(const QVector<TrafficMessage> &messages, const QByteArray &portal,
                   QObject *parent)
    : QObject(parent)
    , m_messages(messages)
    , m_portal(portal)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this,
            [this] { carryOut(m_replay->advance(m_clock.elapsed())); });
}

void Replayer::take(int type, const QByteArray &payload)
{
    // Before a program is there nobody would hear what the recording begins with.
    if (!m_replay)
        m_replay.emplace(m_messages, m_clock.elapsed());
    carryOut(m_replay->take(type, payload, m_clock.elapsed()));
}

void Replayer::carryOut(const TrafficReplay::Step &step)
{
    for (const QString &note : step.notes)
        emit message("replay: " + note);
    for (const TrafficMessage &message : step.sends) {
        const bool isPortal = message.type == int(Event::NewPortal) && !m_portal.isEmpty();
        emit due(static_cast<Event>(message.type), isPortal ? m_portal : message.payload);
    }
    if (const std::optional<qint64> time = m_replay->nextTime()) {
        const qint64 wait = *time - m_clock.elapsed();
        m_timer.start(int(std::clamp(wait, qint64{0}, qint64{std::numeric_limits<int>::max()})));
    } else {
        m_timer.stop();
    }
}

ParsedTraffic readTrafficFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, QString("%1: %2").arg(name, file.errorString()), {}};
    ParsedTraffic traffic = parseTraffic(file.readAll());
    if (!traffic.failure.isEmpty())
        traffic.failure.prepend(name + ':');
    if (!traffic.warning.isEmpty())
        traffic.warning.prepend(name + ':');
    return traffic;
}
