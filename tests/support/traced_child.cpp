// SPDX-License-Identifier: Apache-2.0
#include "tests/support/traced_child.h"

#include <csignal>
#include <fstream>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/** Enters namespaces as whoever this process is: nobody at all could make no file there. */
bool enterOwnUsers(int others)
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER | others) != 0)
        return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
    return std::to_string(::geteuid()) == user && std::to_string(::getegid()) == group;
}

} // namespace

int inChild(const std::function<int()> &piece)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(piece());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool killedAtCall(int last, const std::function<void()> &piece,
                  const std::function<void(unsigned long)> &seen)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        piece();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, WUNTRACED);
    const bool isTraced =
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0;
    for (int stop = 0; isTraced; ++stop) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status))
            return false;
        __ptrace_syscall_info info = {};
        ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof(info), &info);
        if (seen && info.op == PTRACE_SYSCALL_INFO_ENTRY)
            seen(static_cast<unsigned long>(info.entry.nr));
        if (stop == last)
            break;
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return isTraced;
}

bool enterOwnMounts()
{
    return (::unshare(CLONE_NEWNS) == 0 || enterOwnUsers(CLONE_NEWNS)) &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}
