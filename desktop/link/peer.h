// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/frame.h"
#include "enigma2/send_limit.h"

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>

/**
 * One connection to the receiver. A peer that sends nothing for the settle time is a listener and
 * gets the events; the first byte that it sends makes it a commander for the rest of its life.
 */
class Peer : public QObject
{
    Q_OBJECT

public:
    /** Takes the socket over. settleMs is how long a new connection counts as undecided. */
    Peer(QLocalSocket *socket, int settleMs, QObject *parent);

    bool isListener() const { return m_role == Role::Listener; }

    /** Sends a frame and flushes it; what goes beyond SendLimit is dropped with a message. */
    void send(const QByteArray &bytes);

signals:
    /** A whole frame came. */
    void commandReceived(int type, const QByteArray &payload);

    /** From now on isListener() is true. */
    void becameListener();

    void disconnected();

    /** Something that a person may want to read, one line. */
    void message(const QString &line);

private:
    enum class Role { Undecided, Listener, Commander };

    void settle();
    void readCommands();
    void noteSent();

    QLocalSocket *m_socket;
    FrameSplitter m_splitter;
    SendLimit m_sendLimit;
    Role m_role = Role::Undecided;
};
