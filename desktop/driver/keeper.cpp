// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/keeper.h"

#include <QDir>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

constexpr int pollMs = 10;
constexpr int politeMs = 1500;
constexpr int killMs = 30000; ///< What was killed may wait long for a processor to end on.
constexpr int removals = 5;

/** Waits until no process of the group is left; zombies count until somebody reaps them. */
bool waitForGroup(pid_t group, int timeMs)
{
    for (int waited = 0; waited < timeMs; waited += pollMs) {
        if (::kill(-group, 0) != 0 && errno == ESRCH)
            return true;
        ::usleep(pollMs * 1000);
    }
    return false;
}

void endGroup(pid_t group)
{
    ::kill(-group, SIGTERM);
    ::kill(-group, SIGCONT);
    if (!waitForGroup(group, politeMs)) {
        ::kill(-group, SIGKILL);
        waitForGroup(group, killMs);
    }
}

} // namespace

int keepBox(const QString &folder)
{
    // A terminal's Ctrl-C is for the driver, which then closes the pipe.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_IGN);
    std::string line;
    char bytes[64];
    for (ssize_t size = 1; size != 0;) {
        size = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (size > 0)
            line.append(bytes, std::size_t(size));
        else if (size < 0 && errno != EINTR)
            break;
    }
    const long group = std::strtol(line.c_str(), nullptr, 10);
    if (group > 1)
        endGroup(pid_t(group));
    // Whoever is not gone yet may still make a file in a folder that is being removed.
    for (int count = 0; count < removals && !QDir(folder).removeRecursively(); ++count)
        ::usleep(pollMs * 1000);
    return QDir(folder).exists() ? 1 : 0;
}
