// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <thread>

/** What a receiver does wrong. */
enum class Fault {
    None,
    AnswersNothing,
    AnswersWithOtherType,
    AnswersWithTwoBytes,
    AnswersWithEmptyText,
    AnswersWithBrokenJson,
    AnswersTwice,
    AnswersNonsenseNot,
    WritesHeaderAlone,
    SendsOtherMagic,
    SendsOnCommands,
    SendsShortEvent,
    SendsBadTracks,
    SendsUnknownType,
    SendsTooLarge,
    Floods,
    SendsRubbish,
    Hangs,
    TellsNoLength,
    TellsNoPositionAfterSeek,
    SeeksNowhere,
    TellsPortalOnce,
    ClosesAtUnknown,
    NeedsWholeReads,
    TakesThreeFromRead,
    ClosesAtLarge,
    EndsAtMute,
    EndsAtHalfCommand,
    EndsAtClosedListener,
};

/**
 * A receiver that does all right but one thing, in a thread of its own. It knows the wire by its
 * bytes alone.
 */
class FaultyReceiver
{
public:
    /** Serves the path at once. */
    FaultyReceiver(const QString &path, Fault fault);
    ~FaultyReceiver();

    FaultyReceiver(const FaultyReceiver &) = delete;
    FaultyReceiver &operator=(const FaultyReceiver &) = delete;

private:
    struct Peer
    {
        QByteArray input;
        bool isCommander = false;
    };

    void serve();
    bool readFrom(int descriptor);
    void takeFrames(int descriptor, Peer &peer);
    void handle(int descriptor, quint32 type, const QByteArray &payload);
    void startPlayback();
    void answer(quint32 type);
    void sendEvent(quint32 type, const QByteArray &payload = {});
    void write(int descriptor, const QByteArray &bytes);
    int listener() const;

    Fault m_fault;
    int m_server = -1;
    int m_wake[2] = {-1, -1};
    std::map<int, Peer> m_peers; ///< By descriptor.
    bool m_hasEnded = false;
    bool m_hasToldPortal = false;
    std::thread m_thread;
};
