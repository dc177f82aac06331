// SPDX-License-Identifier: Apache-2.0
#include "desktop/traffic/traffic_recorder.h"

TrafficRecorder::TrafficRecorder(QObject *parent)
    : QObject(parent)
{
}

QString TrafficRecorder::start(const QString &fileName)
{
    m_file.setFileName(fileName);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return QString("Cannot record into %1: %2.").arg(fileName, m_file.errorString());
    m_clock.start();
    write(trafficHeader(QDateTime::currentDateTime()));
    return {};
}

void TrafficRecorder::noteCommand(int type, const QByteArray &payload)
{
    note(TrafficMessage::Direction::ToReceiver, type, payload);
}

void TrafficRecorder::noteSent(int type, const QByteArray &payload)
{
    note(TrafficMessage::Direction::ToProgram, type, payload);
}

void TrafficRecorder::noteConnections(int count)
{
    write(connectionLine(m_clock.elapsed(), count));
}

void TrafficRecorder::note(TrafficMessage::Direction direction, int type, const QByteArray &payload)
{
    TrafficMessage message;
    message.ms = m_clock.elapsed();
    message.direction = direction;
    message.type = type;
    message.payload = payload;
    write(trafficLine(message));
}

void TrafficRecorder::write(const QByteArray &line)
{
    if (!m_file.isOpen())
        return;
    const qint64 before = m_file.pos();
    if (m_file.write(line + '\n') == line.size() + 1)
        return;
    // A disk that fills up takes a part of it, which counts as no error.
    const QString reason =
        m_file.error() == QFileDevice::NoError ? "the disk is full" : m_file.errorString();
    // No half of a line stays.
    m_file.resize(before);
    m_file.close();
    emit message(QString("recording stopped, %1: %2").arg(m_file.fileName(), reason));
}
