// SPDX-License-Identifier: Apache-2.0
#include "app/questions.h"

#include "platform/program_version.h"

#include <cstdio>
#include <cstring>

namespace {

const char help[] =
    "Usage: vesprel [ARGUMENT OF QT...]\n"
    "\n"
    "Shows a portal on the whole screen and gives its scripts the box's interface. It does not "
    "end\n"
    "by itself. Its settings are environment variables, among them:\n"
    "\n"
    "  Q_VESPREL_PORTAL  the portal's address\n"
    "  Q_VESPREL_LOG     true: the log goes to /tmp/vesprel.log instead of the standard error\n"
    "  Q_USER_AGENT      the name by which portals know the box\n"
    "  Q_CACHE_PATH      the folder of the disk cache\n"
    "  VESPREL_TRUST     a PEM file with certificates that count as authorities\n"
    "\n"
    "docs/box.md lists them all. As the only argument, --help prints this text and --version the\n"
    "version and the commit that was built.\n";

} // namespace

bool answerQuestion(int argc, char **argv)
{
    const char *question = argc == 2 ? argv[1] : "";
    if (std::strcmp(question, "--help") == 0)
        std::fputs(help, stdout);
    else if (std::strcmp(question, "--version") == 0)
        std::printf("%s\n", qPrintable(programVersion("vesprel")));
    else
        return false;
    return true;
}
