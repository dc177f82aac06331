// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLocalSocket>
#include <QString>
#include <QThread>

class AnswerMailbox;
class EventQueue;

/**
 * Reads from the receiver: owns the receive socket and, while it runs, what cuts the messages out
 * of it, until interruption is requested. Without a server, or once the connection dropped, it
 * keeps polling the unconnected socket; nothing reconnects.
 */
class Enigma2Thread : public QThread
{
    Q_OBJECT

public:
    /** The queue and the mailbox must outlive the run. */
    Enigma2Thread(EventQueue &events, AnswerMailbox &answers);

    /** Name (a path) of the server to connect to; to be set before the thread starts. */
    void setServerName(const QString &name) { m_serverName = name; }

protected:
    void run() override;

private slots:
    void onConnected();
    /** Hears of nothing: the sending socket tells of the same errors. */
    void onError(QLocalSocket::LocalSocketError error);

private:
    EventQueue &m_events;
    AnswerMailbox &m_answers;
    QString m_serverName;
};
