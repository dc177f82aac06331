// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <mutex>
#include <thread>

/**
 * A receiver for tests: serves a local socket from a thread of its own, keeps every byte that the
 * command connection brings, and sends literal bytes over the event connection. The program
 * connects its command socket first.
 */
class ReceiverPeer
{
public:
    /** Listens at the path at once. */
    explicit ReceiverPeer(const QString &path);
    ~ReceiverPeer();

    ReceiverPeer(const ReceiverPeer &) = delete;
    ReceiverPeer &operator=(const ReceiverPeer &) = delete;

    /** True once both connections of the program are there. */
    bool isConnected() const;

    /** Everything received so far, as hexadecimal digits. */
    QByteArray received() const;

    /** Forgets what was received. */
    void clear();

    /** Sends these bytes, given as hexadecimal digits, over the event connection. */
    void send(const QByteArray &hex);

    /** Answers every request of this type with a frame, both given as in send(). */
    void answer(quint32 requestType, const QByteArray &hex);

private:
    void serve();
    void take(const QByteArray &bytes);

    int m_listener = -1;
    int m_wake[2] = {-1, -1};
    mutable std::mutex m_mutex;
    int m_commands = -1;
    int m_events = -1;
    QByteArray m_received;
    QByteArray m_stream;
    QHash<quint32, QByteArray> m_answers;
    std::thread m_thread;
};
