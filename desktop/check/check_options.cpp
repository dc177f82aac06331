// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/check_options.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

namespace {

const char description[] =
    "Checks a receiver: connects to its socket as Vesprel does and prints, as TAP, what it does "
    "otherwise\n"
    "than the protocol's description says. End Vesprel before. Exit status: 0 nothing failed,\n"
    "1 something failed, 2 nothing could be checked.";

} // namespace

CheckOptions parseCheckOptions(const QStringList &arguments, QString &help)
{
    const QCommandLineOption url(
        "url", "Plays this too, and looks at the events of playback (10 s for the start).", "URL");
    const QCommandLineOption all("all", "Sends stand-by (twice), reboot, exit and applications "
                                        "too, which change what a viewer sees.");
    const QCommandLineOption junit("junit", "Writes the report as JUnit, too.", "FILE");
    const QCommandLineOption limit("time-limit", "Gives up after so long, 300 by default.",
                                   "SECONDS", "300");
    const QCommandLineOption wantsHelp({"h", "help"}, "Prints this text and ends.");
    const QCommandLineOption wantsVersion("version", "Prints the version and ends.");
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addOptions({url, all, junit, limit, wantsHelp, wantsVersion});
    parser.addPositionalArgument("SOCKET", "Path of the receiver's socket.");
    CheckOptions options;
    const bool parsed = parser.parse(arguments);
    help = parser.helpText();
    bool isNumber = false;
    const int seconds = parser.value(limit).toInt(&isNumber);
    options.timeLimit = std::chrono::seconds(seconds);
    options.socket = parser.positionalArguments().value(0);
    options.url = parser.value(url);
    options.junitFile = parser.value(junit);
    options.sendsAll = parser.isSet(all);
    options.wantsHelp = parser.isSet(wantsHelp);
    options.wantsVersion = parser.isSet(wantsVersion);
    if (!parsed)
        options.failure = parser.errorText();
    else if (!isNumber || seconds < 1 || seconds > 86400)
        options.failure = "The time limit is a number of seconds, from 1 to 86400.";
    else if (parser.positionalArguments().size() != 1)
        options.failure = "Give one argument, the path of the receiver's socket.";
    return options;
}
