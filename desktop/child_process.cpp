// SPDX-License-Identifier: Apache-2.0
#include "desktop/child_process.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

void ChildProcess::setupChildProcess()
{
    // Between fork and exec: system calls only.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    // A Ctrl-C in the terminal is for the receiver, which ends its children in good order.
    ::setpgid(0, 0);
    std::signal(SIGPIPE, SIG_DFL);
    if (m_inherited >= 0)
        ::fcntl(m_inherited, F_SETFD, 0);
}
