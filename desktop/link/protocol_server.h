// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/link/delay_line.h"
#include "desktop/link/peer.h"
#include "enigma2/messages.h"

#include <QByteArray>
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

/** Waiting times of the server, in ms. */
struct ServerTiming
{
    int settle = 100; ///< A connection that sends nothing for so long is a listener.
    int hold = 1000;  ///< So long an event waits for a listener while only others are connected.
};

/**
 * The receiver's end of the link: serves a local socket, hands out the commands of every
 * connection and sends events to those that only listen.
 *
 * The program makes two connections in no fixed order, so an event that finds peers but no listener
 * waits a moment; what finds nobody is dropped with a message.
 */
class ProtocolServer : public QObject
{
    Q_OBJECT

public:
    explicit ProtocolServer(const ServerTiming &timing = {}, QObject *parent = nullptr);

    /**
     * Serves the socket at this path, for its user only, and removes it when the server goes.
     * Returns what went wrong as a sentence, empty when it is served.
     */
    QString listen(const QString &path);

    /** Sends an event or an answer with this payload to all listeners. */
    void send(Event event, const QByteArray &payload = {});

    /** Acts as a receiver that hangs for so many ms: handles and sends nothing, then everything. */
    void beSilent(int ms);

    /** Acts as a slow receiver from now on: handles each command so many ms late. */
    void setDelay(int ms) { m_incoming.setDelay(ms); }

    /** Acts as a receiver that died: closes all connections and serves no more. */
    void leave();

signals:
    /** A frame came on any connection; the type may be unknown and the payload too short. */
    void commandReceived(int type, const QByteArray &payload);

    /** What a listener was sent. */
    void sent(Event event, const QByteArray &payload);

    /** The number of connections changed. */
    void peerCountChanged(int count);

    /** A process connected, once or more often. */
    void peerJoined(qint64 processId);

    /** The last connection closed. */
    void lastPeerLeft();

    /** Something that a person may want to read, one line. */
    void message(const QString &line);

private:
    struct HeldEvent
    {
        Event event;
        QByteArray payload;
    };

    void acceptPeers();
    void removePeer(Peer *peer);
    void sendOrHold(const HeldEvent &held);
    bool sendNow(const HeldEvent &event);
    void sendHeld();
    QVector<HeldEvent> takeHeld();
    void dropHeld();
    void drop(const HeldEvent &event);

    ServerTiming m_timing;
    QLocalServer m_server;
    QTimer m_holdTimer;
    QVector<Peer *> m_peers;
    QVector<HeldEvent> m_held;
    int m_heldBytes = 0;
    DelayLine m_incoming;
    DelayLine m_outgoing;
};
