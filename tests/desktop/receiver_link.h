// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/link/protocol_server.h"
#include "desktop/player/simulated_player.h"
#include "desktop/receiver.h"
#include "desktop/recordings/memory_recordings.h"
#include "platform/box_paths.h"

#include <QByteArray>
#include <QDataStream>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QString>

// Fast enough for a test; a second of the medium passes every other millisecond.
inline constexpr SimulatedTiming fastPlayer = {1, 2, 1000, 60 * 1000};
inline constexpr ServerTiming fastServer = {20, 2000};

/** Bytes from their hexadecimal digits; spaces are left out. */
inline QByteArray bytes(const char *hex) { return QByteArray::fromHex(hex); }

/** A receiver on its own socket, and the two connections of a program to it. */
struct ReceiverLink
{
    explicit ReceiverLink(const SimulatedTiming &playerTiming = fastPlayer,
                          const ServerTiming &serverTiming = fastServer)
        : server(serverTiming)
        , player(playerTiming)
        , receiver(server, player, recordings)
        , messages(&receiver, &Receiver::message)
    {
        failure = server.listen(BoxPaths::receiverSocket());
        commander.connectToServer(BoxPaths::receiverSocket());
        listener.connectToServer(BoxPaths::receiverSocket());
    }

    /** Sends a frame on the commanding connection. */
    void command(int type, const QByteArray &payload)
    {
        QByteArray frame;
        QDataStream stream(&frame, QIODevice::WriteOnly);
        stream << 987654321 << type << payload; // Big-endian, the payload with its length.
        commander.write(frame);
    }

    /** True once a line with this beginning was printed. */
    bool printed(const QString &beginning) const
    {
        for (const auto &message : messages) {
            if (message.first().toString().startsWith(beginning))
                return true;
        }
        return false;
    }

    /** Collects what the listener gets; true once it contains these bytes. */
    bool heard(const QByteArray &expected)
    {
        received += listener.readAll();
        return received.contains(expected);
    }

    ProtocolServer server;
    SimulatedPlayer player;
    MemoryRecordings recordings;
    Receiver receiver;
    QSignalSpy messages;
    QString failure;
    QLocalSocket commander;
    QLocalSocket listener;
    QByteArray received;
};
