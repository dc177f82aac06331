// SPDX-License-Identifier: Apache-2.0
#include "app/watchdog.h"

#include "platform/environment.h"

#include <QDebug>

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Signs within one limit, and how many of them may fail to come.
constexpr int signsPerLimit = 20;
constexpr int missingSigns = 18;

/** Sends one datagram; never waits, since a supervisor that hangs must not hang the program. */
void notify(const QByteArray &socketName, const char *text)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const auto length = static_cast<std::size_t>(socketName.size());
    if (length == 0 || length >= sizeof address.sun_path)
        return;
    std::memcpy(address.sun_path, socketName.constData(), length);
    if (address.sun_path[0] == '@')
        address.sun_path[0] = '\0';
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return;
    // The length counts: an abstract name ends where it says.
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    ::sendto(socket, text, std::strlen(text), MSG_DONTWAIT | MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr *>(&address), size);
    ::close(socket);
}

void makeFile(const QByteArray &path)
{
    if (path.isEmpty())
        return;
    const int file =
        ::open(path.constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
    if (file >= 0)
        ::close(file);
}

QByteArray take(const char *variable)
{
    const QByteArray value = qgetenv(variable);
    qunsetenv(variable);
    return value;
}

} // namespace

WatchdogOptions WatchdogOptions::takeFromEnvironment()
{
    WatchdogOptions options;
    options.notifySocket = take("NOTIFY_SOCKET");
    options.lifeFile = take(Environment::watchdogFile);
    const QByteArray process = take("WATCHDOG_PID");
    const qint64 limit = take("WATCHDOG_USEC").toLongLong() / 1000;
    // Meant for a parent that the variables were inherited from.
    const bool isMeant = process.isEmpty() || process.toLongLong() == ::getpid();
    if (isMeant && limit >= signsPerLimit)
        options.limit = std::chrono::milliseconds(limit);
    return options;
}

Watchdog::Watchdog(const WatchdogOptions &options)
    : m_options(options)
    , m_interval(options.limit / signsPerLimit)
{
    QTimer::singleShot(0, &m_timer, [this] { notify(m_options.notifySocket, "READY=1"); });
    if (m_interval.count() == 0)
        return;
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { giveSign(); });
    m_timer.start(m_interval);
    m_watcher = std::thread(&Watchdog::watch, this);
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_ended.notify_one();
    if (m_watcher.joinable())
        m_watcher.join();
}

void Watchdog::giveSign()
{
    ++m_signs;
    notify(m_options.notifySocket, "WATCHDOG=1");
    makeFile(m_options.lifeFile);
}

void Watchdog::watch()
{
    unsigned seen = m_signs;
    int missing = 0;
    std::unique_lock<std::mutex> lock(m_mutex);
    // Intervals that this thread has slept are counted, not time: a process that was stopped, or a
    // machine that was suspended, has slept no interval meanwhile.
    while (!m_ended.wait_for(lock, m_interval, [this] { return m_isEnding; })) {
        const unsigned signs = m_signs;
        missing = signs == seen ? missing + 1 : 0;
        seen = signs;
        if (missing < missingSigns)
            continue;
        qCritical("No sign of life from the page or the window for %lld s, ending the program",
                  static_cast<long long>(m_interval.count() * missing / 1000));
        // Nothing else can be done from here: the main thread owns whatever would be tidied up.
        ::_exit(silenceStatus);
    }
}
