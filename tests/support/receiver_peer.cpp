// SPDX-License-Identifier: Apache-2.0
#include "tests/support/receiver_peer.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <array>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

void writeAll(int descriptor, const QByteArray &bytes)
{
    ssize_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::send(descriptor, bytes.constData() + written,
                   static_cast<std::size_t>(bytes.size() - written), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return;
        written += qMax<ssize_t>(count, 0);
    }
}

void closeAll(std::initializer_list<int> descriptors)
{
    for (const int descriptor : descriptors) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

} // namespace

ReceiverPeer::ReceiverPeer(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path);
    m_listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(m_listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(m_listener, 4) != 0 || ::pipe(m_wake) != 0)
        qFatal("cannot listen at %s: %s", qPrintable(path), std::strerror(errno));
    m_thread = std::thread(&ReceiverPeer::serve, this);
}

ReceiverPeer::~ReceiverPeer()
{
    ::close(m_wake[1]);
    m_thread.join();
    closeAll({m_listener, m_wake[0], m_commands, m_events});
}

bool ReceiverPeer::isConnected() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_commands >= 0 && m_events >= 0;
}

QByteArray ReceiverPeer::received() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_received.toHex();
}

void ReceiverPeer::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_received.clear();
}

void ReceiverPeer::send(const QByteArray &hex)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    writeAll(m_events, QByteArray::fromHex(hex));
}

void ReceiverPeer::answer(quint32 requestType, const QByteArray &hex)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers.insert(requestType, QByteArray::fromHex(hex));
}

void ReceiverPeer::serve()
{
    bool commandsOpen = true;
    for (;;) {
        std::array<pollfd, 3> watched = {{{m_wake[0], POLLIN, 0},
                                          {m_listener, POLLIN, 0},
                                          {commandsOpen ? m_commands : -1, POLLIN, 0}}};
        if (::poll(watched.data(), watched.size(), -1) < 0)
            continue;
        if (watched[0].revents != 0)
            return;
        // First what the program sends before its second connection: who sees both has got it.
        if (watched[2].revents != 0) {
            char bytes[65536];
            const ssize_t count = ::read(m_commands, bytes, sizeof bytes);
            commandsOpen = count > 0;
            if (commandsOpen)
                take(QByteArray(bytes, static_cast<int>(count)));
        }
        if (watched[1].revents != 0) {
            const int connection = ::accept(m_listener, nullptr, nullptr);
            const std::lock_guard<std::mutex> lock(m_mutex);
            (m_commands < 0 ? m_commands : m_events) = connection;
        }
    }
}

void ReceiverPeer::take(const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_received += bytes;
    m_stream += bytes;
    while (m_stream.size() >= 12) {
        const quint32 type = qFromBigEndian<quint32>(m_stream.constData() + 4);
        const int length = qFromBigEndian<int>(m_stream.constData() + 8);
        if (m_stream.size() < 12 + length)
            return;
        m_stream.remove(0, 12 + length);
        if (m_answers.contains(type))
            writeAll(m_events, m_answers.value(type));
    }
}
