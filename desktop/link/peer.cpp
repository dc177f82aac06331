// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/peer.h"

#include <QTimer>

Peer::Peer(QLocalSocket *socket, int settleMs, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_splitter([this](std::int32_t type, std::size_t length) {
        emit message(QString("skipped command %1, too large: %2 bytes").arg(type).arg(length));
    })
{
    m_socket->setParent(this);
    connect(m_socket, &QLocalSocket::readyRead, this, &Peer::readCommands);
    connect(m_socket, &QLocalSocket::bytesWritten, this, &Peer::noteSent);
    connect(m_socket, &QLocalSocket::disconnected, this, &Peer::disconnected);
    QTimer::singleShot(settleMs, this, &Peer::settle);
}

void Peer::send(const QByteArray &bytes)
{
    const auto waiting = static_cast<std::size_t>(m_socket->bytesToWrite());
    switch (m_sendLimit.offer(waiting, static_cast<std::size_t>(bytes.size()))) {
    case SendLimit::Verdict::Send: break;
    case SendLimit::Verdict::FirstDrop:
        emit message("dropping events, a listener does not read");
        return;
    case SendLimit::Verdict::Drop: return;
    }
    m_socket->write(bytes);
    m_socket->flush();
}

void Peer::noteSent()
{
    const auto waiting = static_cast<std::size_t>(m_socket->bytesToWrite());
    if (const std::size_t dropped = m_sendLimit.endDropping(waiting))
        emit message(QString("the listener reads again, %1 events were dropped").arg(dropped));
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
    m_splitter.feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    while (!m_splitter.hasLoneHeaderPiece()) {
        const std::optional<Frame> frame = m_splitter.next();
        if (!frame)
            break;
        emit commandReceived(frame->type, QByteArray(frame->payload.data(),
                                                     static_cast<int>(frame->payload.size())));
    }
}
