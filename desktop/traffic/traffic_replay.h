// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/traffic/traffic_file.h"

#include <QQueue>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/**
 * Decides what a recording sends, and when. Each message to the program comes as long after the
 * command before it as it did in the recording. Times are ms of any clock that goes on. No thread
 * of its own, no clock.
 */
class TrafficReplay
{
public:
    /** What is to be done now. */
    struct Step
    {
        QVector<TrafficMessage> sends;
        QStringList notes; ///< Lines for a person: where this box differs from the recorded one.
    };

    /** Begins at this time with the messages of a recording. */
    TrafficReplay(const QVector<TrafficMessage> &messages, qint64 now);

    /** A command came from the program. */
    Step take(int type, const QByteArray &payload, qint64 now);

    /** It is this time. */
    Step advance(qint64 now);

    /** When there is something to do next; nothing if only a command makes a difference. */
    std::optional<qint64> nextTime() const;

private:
    struct Scheduled
    {
        qint64 time = 0; ///< When it is due.
        TrafficMessage message;
    };

    bool isEnd() const { return m_next >= m_messages.size(); }
    int findCommand(int type, const QByteArray &payload) const;
    void skipTo(int index, Step &step);
    void hurry(Step &step);
    void match(const QByteArray &payload, qint64 now, Step &step);
    void answerUnexpected(int type, const QByteArray &payload, Step &step);
    void schedule(qint64 anchor, qint64 now);
    qint64 patience() const { return m_expectedTime + patienceMs; }

    static constexpr int patienceMs = 5000;

    QVector<TrafficMessage> m_messages;
    int m_next = 0; ///< The command that is expected next.
    qint64 m_expectedTime = 0;
    bool m_hasComplained = false;
    bool m_hasEnded = false;
    QQueue<Scheduled> m_scheduled;
};
