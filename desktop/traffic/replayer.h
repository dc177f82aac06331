// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/traffic/traffic_replay.h"
#include "enigma2/messages.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <optional>

/** Plays a recording of the link in place of a receiver. GUI thread. */
class Replayer : public QObject
{
    Q_OBJECT

public:
    /**
     * With the messages of a recording. Where a portal is named, percent-encoded, that is announced
     * in place of each one that was recorded.
     */
    Replayer(const QVector<TrafficMessage> &messages, const QByteArray &portal,
             QObject *parent = nullptr);

    /** A command came; the first one begins the replay. */
    void take(int type, const QByteArray &payload);

signals:
    /** This is to be sent to the program. */
    void due(Event event, const QByteArray &payload);

    /** Something that a person may want to read, one line. */
    void message(const QString &line);

private:
    void carryOut(const TrafficReplay::Step &step);

    QVector<TrafficMessage> m_messages;
    QByteArray m_portal;
    std::optional<TrafficReplay> m_replay;
    QElapsedTimer m_clock;
    QTimer m_timer;
};

/** Reads the recording of this file, for its user: a failure or warning names the file. */
ParsedTraffic readTrafficFile(const QString &name);
