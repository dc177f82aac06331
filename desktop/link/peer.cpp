// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/peer.h"

#include <QTimer>

namespace {

// Far above any command; a peer that announces more is none of ours.
constexpr qint64 largestPending = 16 * 1024 * 1024;

} // namespace

Peer::Peer(QLocalSocket *socket, int settleMs, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
{
    m_socket->setParent(this);
    connect(m_socket, &QLocalSocket::readyRead, this, &Peer::readCommands);
    connect(m_socket, &QLocalSocket::disconnected, this, &Peer::disconnected);
    QTimer::singleShot(settleMs, this, &Peer::settle);
}

void Peer::send(const QByteArray &bytes)
{
    m_socket->write(bytes);
    m_socket->flush();
}

void Peer::settle()
{
    if (m_role != Role::Undecided)
        return;
    m_role = Role::Listener;
    emit becameListener();
}

void Peer::readCommands()
{
    const QByteArray bytes = m_socket->readAll();
    if (bytes.isEmpty())
        return;
    m_role = Role::Commander;
    m_pendingBytes += bytes.size();
    m_splitter.feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    Frame frame;
    while (m_splitter.hasHeader() && m_splitter.next(frame)) {
        const QByteArray payload(frame.payload.data(), static_cast<int>(frame.payload.size()));
        m_pendingBytes -= static_cast<qint64>(frameHeaderSize) + payload.size();
        emit commandReceived(frame.type, payload);
    }
    if (m_pendingBytes > largestPending)
        m_socket->abort();
}
