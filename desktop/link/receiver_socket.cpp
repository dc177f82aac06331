// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/receiver_socket.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int longestSocketPath = int(sizeof(sockaddr_un::sun_path)) - 1;

QString systemText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

/** Tries to connect to a socket file and hangs up again; 0 or the system's error number. */
int tryConnect(const QByteArray &path)
{
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return errno;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int result =
        ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    const int error = result == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
}

QString removeStaleSocket(const QString &path, const QByteArray &encoded)
{
    const int error = tryConnect(encoded);
    // EAGAIN is a server that is too busy to take the connection at once.
    if (error == 0 || error == EAGAIN)
        return QString("A receiver already answers on %1.").arg(path);
    if (error != ECONNREFUSED)
        return QString("Cannot tell whether %1 is in use: %2.").arg(path, systemText(error));
    if (::unlink(encoded.constData()) != 0)
        return QString("Cannot remove the unused socket %1: %2.").arg(path, systemText(errno));
    return QString();
}

} // namespace

QString prepareSocketPath(const QString &path)
{
    const QByteArray encoded = QFile::encodeName(path);
    if (encoded.size() > longestSocketPath)
        return QString("The socket path has %1 bytes, %2 are allowed: %3")
            .arg(encoded.size())
            .arg(longestSocketPath)
            .arg(path);
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return QString("Cannot create the folder %1.").arg(folder);
    struct stat status = {};
    if (::lstat(encoded.constData(), &status) != 0) {
        if (errno == ENOENT)
            return QString();
        return QString("Cannot look at %1: %2.").arg(path, systemText(errno));
    }
    if (!S_ISSOCK(status.st_mode))
        return QString("%1 exists and is not a socket; it is left alone.").arg(path);
    return removeStaleSocket(path, encoded);
}
