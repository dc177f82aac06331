// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/protocol_server.h"

#include "desktop/link/message_text.h"
#include "desktop/link/receiver_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <utility>

namespace {

constexpr int mostHeldBytes = int(SendLimit::capacity);

QByteArray frameOf(Event event, const QByteArray &payload)
{
    const auto header =
        packFrameHeader(static_cast<std::int32_t>(event), static_cast<std::size_t>(payload.size()));
    return QByteArray(header.data(), static_cast<int>(header.size())) + payload;
}

/** Who is at the other end; 0 if that is not to be known. */
qint64 processOf(const QLocalSocket &socket)
{
    ucred credentials = {};
    socklen_t size = sizeof credentials;
    const int descriptor = int(socket.socketDescriptor());
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0
               ? credentials.pid
               : 0;
}

} // namespace

ProtocolServer::ProtocolServer(const ServerTiming &timing, QObject *parent)
    : QObject(parent)
    , m_timing(timing)
{
    m_holdTimer.setSingleShot(true);
    m_holdTimer.setInterval(m_timing.hold);
    connect(&m_holdTimer, &QTimer::timeout, this, &ProtocolServer::dropHeld);
    connect(&m_server, &QLocalServer::newConnection, this, &ProtocolServer::acceptPeers);
}

QString ProtocolServer::listen(const QString &path)
{
    const QString obstacle = prepareSocketPath(path);
    if (!obstacle.isEmpty())
        return obstacle;
    // Whoever may connect commands the receiver; nobody gets in before a later change of mode.
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO | S_IXUSR);
    const bool isListening = m_server.listen(path);
    ::umask(mask);
    if (!isListening)
        return QString("Cannot serve %1: %2.").arg(path, m_server.errorString());
    return QString();
}

void ProtocolServer::send(Event event, const QByteArray &payload)
{
    m_outgoing.push([this, held = HeldEvent{event, payload}] { sendOrHold(held); });
}

void ProtocolServer::beSilent(int ms)
{
    m_incoming.hold(ms);
    m_outgoing.hold(ms);
}

void ProtocolServer::leave()
{
    m_server.close();
    const QVector<Peer *> peers = m_peers;
    for (Peer *peer : peers)
        removePeer(peer);
}

void ProtocolServer::sendOrHold(const HeldEvent &held)
{
    if (sendNow(held))
        return;
    if (m_peers.isEmpty() || m_heldBytes + held.payload.size() > mostHeldBytes) {
        drop(held);
        return;
    }
    m_held.append(held);
    m_heldBytes += int(frameHeaderSize) + held.payload.size();
    if (!m_holdTimer.isActive())
        m_holdTimer.start();
}

void ProtocolServer::acceptPeers()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        auto *peer = new Peer(socket, m_timing.settle, this);
        connect(peer, &Peer::commandReceived, this, [this](int type, const QByteArray &payload) {
            m_incoming.push([this, type, payload] { emit commandReceived(type, payload); });
        });
        connect(peer, &Peer::message, this, &ProtocolServer::message);
        connect(peer, &Peer::becameListener, this, &ProtocolServer::sendHeld);
        connect(peer, &Peer::disconnected, this, [this, peer] { removePeer(peer); });
        m_peers.append(peer);
        emit message("connection opened");
        emit peerCountChanged(m_peers.size());
        emit peerJoined(processOf(*socket));
    }
}

void ProtocolServer::removePeer(Peer *peer)
{
    m_peers.removeOne(peer);
    peer->disconnect(this);
    peer->deleteLater();
    emit message("connection closed");
    emit peerCountChanged(m_peers.size());
    if (!m_peers.isEmpty())
        return;
    m_incoming.clear();
    m_outgoing.clear();
    // The next program has not asked for what this one has.
    dropHeld();
    emit lastPeerLeft();
}

bool ProtocolServer::sendNow(const HeldEvent &event)
{
    bool hasListener = false;
    // A copy: a peer that turns out to be gone is taken out at once.
    const QVector<Peer *> peers = m_peers;
    for (Peer *peer : peers) {
        if (!peer->isListener())
            continue;
        peer->send(frameOf(event.event, event.payload));
        hasListener = true;
    }
    if (hasListener)
        emit sent(event.event, event.payload);
    // The progress comes every second and would bury everything else.
    if (hasListener && event.event != Event::PlayTimeStatus)
        emit message("sent: " + describeEvent(event.event, event.payload));
    return hasListener;
}

void ProtocolServer::sendHeld()
{
    m_holdTimer.stop();
    const QVector<HeldEvent> held = takeHeld();
    for (const HeldEvent &event : held)
        sendNow(event);
}

QVector<ProtocolServer::HeldEvent> ProtocolServer::takeHeld()
{
    m_heldBytes = 0;
    return std::exchange(m_held, {});
}

void ProtocolServer::dropHeld()
{
    const QVector<HeldEvent> held = takeHeld();
    for (const HeldEvent &event : held)
        drop(event);
}

void ProtocolServer::drop(const HeldEvent &event)
{
    emit message("dropped, nobody listens: " + describeEvent(event.event, event.payload));
}
