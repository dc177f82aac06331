// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/peer.h"

#include <QTimer>

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
    m_splitter.feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    while (!m_splitter.hasLoneHeaderPiece()) {
        const std::optional<Frame> frame = m_splitter.next();
        if (!frame)
            break;
        emit commandReceived(frame->type, QByteArray(frame->payload.data(),
                                                     static_cast<int>(frame->payload.size())));
    }
}
