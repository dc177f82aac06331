// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/confinement.h"

#include <QDir>
#include <QProcessEnvironment>

#include <cstdio>
#include <utility>

namespace {

using std::chrono_literals::operator""s;

/** What run.sh confines a box with, too. */
QStringList bwrapArguments(const QString &folder)
{
    QStringList arguments{"--ro-bind", "/", "/", "--dev", "/dev"};
    QStringList devices{"dri", "snd"};
    devices += QDir("/dev").entryList({"nvidia*"}, QDir::AllEntries | QDir::System);
    for (const QString &device : std::as_const(devices))
        arguments += {"--dev-bind-try", "/dev/" + device, "/dev/" + device};
    return arguments + QStringList{"--bind", folder, folder, "--"};
}

bool works()
{
    ProcessStart how;
    how.program = "bwrap";
    how.arguments = bwrapArguments("/dev/shm") + QStringList{"true"};
    how.environment = QProcessEnvironment::systemEnvironment().toStringList();
    Process trial;
    if (trial.start(how) && trial.waitForEnd(10s) && trial.hasSucceeded())
        return true;
    std::fputs("vesprel-driver: bwrap is not there or may not work here; what runs in a session "
               "can write wherever you can\n",
               stderr);
    return false;
}

} // namespace

void confine(ProcessStart &how, const QString &folder)
{
    static const bool possible = works();
    if (!possible)
        return;
    how.arguments = bwrapArguments(folder) + QStringList{how.program} + how.arguments;
    how.program = "bwrap";
}
