// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/enigma2.h"
#include "tests/support/receiver_peer.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/** A link, which waits 60 ms for answers, and the place where its receiver can be. */
struct LinkBench
{
    LinkBench() { link->setReplyTimeout(60); }

    QString socketPath() const { return folder.filePath("receiver"); }

    /** Starts a receiver and connects; what every connection begins with is taken away. */
    void connect()
    {
        peer = std::make_unique<ReceiverPeer>(socketPath());
        link->ConnectServer(socketPath());
        QTRY_VERIFY(peer->isConnected());
        QTRY_COMPARE(peer->received(), QByteArray("3ade68b1000004b00000000400000500"));
        peer->clear();
    }

    QTemporaryDir folder;
    std::unique_ptr<ReceiverPeer> peer;
    std::unique_ptr<Enigma2> link = std::make_unique<Enigma2>(); ///< Goes before its receiver.
};

/** A frame as hexadecimal digits, from those of type and length, and those of the payload. */
inline QByteArray frame(const QByteArray &typeAndLength, const QByteArray &payload = {})
{
    return "3ade68b1" + typeAndLength + payload;
}
