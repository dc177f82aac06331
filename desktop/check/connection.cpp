// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/connection.h"

#include <QThread>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr unsigned long retryMs = 10;

} // namespace

QString Connection::open(const QByteArray &path, const QDeadlineTimer &deadline)
{
    close();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return QString("The path is too long for a socket, %1 bytes.").arg(path.size());
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    while (::connect(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) !=
           0) {
        const int error = errno;
        // The queue of those that wait for the receiver is full.
        if (error == EAGAIN && !deadline.hasExpired()) {
            QThread::msleep(retryMs);
            continue;
        }
        close();
        return error == EAGAIN ? QString("The receiver accepts no connection.")
                               : QString::fromLocal8Bit(std::strerror(error)) + '.';
    }
    return QString();
}

void Connection::close()
{
    for (int *descriptor : {&m_descriptor, &m_pipe[0], &m_pipe[1]}) {
        if (*descriptor >= 0)
            ::close(std::exchange(*descriptor, -1));
    }
}

bool Connection::send(const QByteArray &bytes, const QDeadlineTimer &deadline)
{
    int sent = 0;
    while (isOpen() && sent < bytes.size()) {
        const ssize_t count = ::send(m_descriptor, bytes.constData() + sent,
                                     static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<int>(count);
        } else if (errno == EAGAIN) {
            pollfd watched = {m_descriptor, POLLOUT, 0};
            if (::poll(&watched, 1, static_cast<int>(deadline.remainingTime())) == 0)
                return false;
        } else if (errno != EINTR) {
            close();
        }
    }
    return isOpen();
}

QByteArray Connection::read() { return isOpen() ? receive(m_descriptor) : QByteArray(); }

QByteArray Connection::readWrite()
{
    if (!isOpen() || !openPipe())
        return read();
    // Into a pipe with one place goes what one buffer of the socket holds, and that is never shared
    // by two writes; recv() would join them.
    const ssize_t count = ::splice(m_descriptor, nullptr, m_pipe[1], nullptr, readSize,
                                   SPLICE_F_NONBLOCK | SPLICE_F_MOVE);
    if (count > 0)
        return receive(m_pipe[0]);
    if (count < 0 && errno == EAGAIN)
        return QByteArray();
    return read();
}

QByteArray Connection::receive(int descriptor)
{
    std::array<char, readSize> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        close();
    return {bytes.data(), count > 0 ? static_cast<int>(count) : 0};
}

bool Connection::openPipe()
{
    if (m_pipe[0] >= 0)
        return true;
    // One page is the smallest, and one place.
    return ::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) == 0 && ::fcntl(m_pipe[1], F_SETPIPE_SZ, 1) >= 0;
}
