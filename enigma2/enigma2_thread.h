// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLocalSocket>
#include <QString>
#include <QThread>

class Enigma2;

/**
 * Reads from the receiver: owns the receive socket and hands what it brings to its owner, until
 * interruption is requested. Without a server, or once the connection dropped, it keeps polling
 * the unconnected socket; nothing reconnects.
 */
class Enigma2Thread : public QThread
{
    Q_OBJECT

public:
    explicit Enigma2Thread(Enigma2 *owner);

    /** Name (a path) of the server to connect to; to be set before the thread starts. */
    void setServerName(const QString &name) { m_serverName = name; }

protected:
    void run() override;

private slots:
    void onConnected();
    void onError(QLocalSocket::LocalSocketError error);

private:
    Enigma2 *m_owner;
    QString m_serverName;
};
