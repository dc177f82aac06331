// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/driver.h"
#include "desktop/driver/http_front.h"
#include "desktop/driver/keeper.h"
#include "platform/program_version.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pthread.h>
#include <thread>

namespace {

const char description[] = "Lets WebDriver clients drive boxes: each session is a box of its own "
                           "with receiver, remote and\n"
                           "display. Serves the protocol on 127.0.0.1.";

DriverOptions readOptions(const QStringList &arguments, QString &help)
{
    const QCommandLineOption port("port", "The port, 4444 by default; 0: any free one.", "PORT",
                                  "4444");
    const QCommandLineOption sessions("max-sessions", "Sessions at once, 32 by default.", "N",
                                      "32");
    const QCommandLineOption idle("session-timeout",
                                  "Ends a session that got no command for so many seconds, 600 by "
                                  "default; 0: never.",
                                  "SECONDS", "600");
    const QCommandLineOption hosts(
        "allow-host", "Accepts requests that name this host, too. May be repeated.", "NAME");
    const QCommandLineOption origins(
        "allow-origin", "Accepts requests of web pages of this origin. May be repeated.", "ORIGIN");
    const QCommandLineOption wantsHelp({"h", "help"}, "Prints this text and ends.");
    const QCommandLineOption wantsVersion("version", "Prints the version and ends.");
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addOptions({port, sessions, idle, hosts, origins, wantsHelp, wantsVersion});
    DriverOptions options;
    const bool parsed = parser.parse(arguments);
    help = parser.helpText();
    bool numbers[3] = {};
    options.port = parser.value(port).toInt(&numbers[0]);
    options.maxSessions = parser.value(sessions).toInt(&numbers[1]);
    options.idleTime = std::chrono::seconds(parser.value(idle).toUInt(&numbers[2]));
    options.allowedHosts = parser.values(hosts);
    options.allowedOrigins = parser.values(origins);
    options.wantsHelp = parser.isSet(wantsHelp);
    options.wantsVersion = parser.isSet(wantsVersion);
    if (!parsed)
        options.failure = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        options.failure = "Unexpected argument: " + parser.positionalArguments().constFirst();
    else if (!numbers[0] || !numbers[1] || !numbers[2] || options.port < 0 ||
             options.port > 65535 || options.maxSessions < 1)
        options.failure = "An option's value is no number, or none that fits.";
    return options;
}

/** The first of the paths that exists, seen from the folder of this program. */
QString firstOf(const QStringList &paths)
{
    const QDir here(QCoreApplication::applicationDirPath());
    for (const QString &path : paths) {
        if (QFileInfo::exists(here.absoluteFilePath(path)))
            return QDir::cleanPath(here.absoluteFilePath(path));
    }
    return QDir::cleanPath(here.absoluteFilePath(paths.first()));
}

/** In the build tree, or as installed. */
BoxPrograms findPrograms()
{
    BoxPrograms programs;
    programs.driver = QCoreApplication::applicationFilePath();
    programs.program = firstOf({"../app/vesprel", "../lib/vesprel/vesprel-desktop"});
    programs.receiver = firstOf({"vesprel-receiver", "../lib/vesprel/vesprel-receiver"});
    programs.plugins = firstOf({"plugins", "../lib/vesprel/plugins"});
    programs.keyboardPages = firstOf({"../share/vesprel/keyboard"});
    programs.profiles = firstOf({"../share/vesprel/profiles"});
    programs.clips = firstOf(
        {"../clips", QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                         "/vesprel/clips"});
    return programs;
}

int serve(const DriverOptions &options)
{
    // The awaited come to this thread, by sigwait; no other thread is interrupted.
    sigset_t awaited;
    sigemptyset(&awaited);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&awaited, signal);
    pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    Driver driver(findPrograms(), options);
    HttpFront front(driver, options);
    const int port = front.bind(options.port);
    if (!port) {
        std::fprintf(stderr, "vesprel-driver: port %d of 127.0.0.1 is not free\n", options.port);
        return 1;
    }
    std::printf("vesprel-driver is ready on http://127.0.0.1:%d\n", port);
    std::fflush(stdout);
    std::thread(&HttpFront::serve, &front).detach();
    int signal = 0;
    sigwait(&awaited, &signal);
    driver.endSessions();
    front.stop();
    std::fflush(nullptr);
    // Nothing waits for the server: an idle connection of a client would hold it for a minute.
    std::_Exit(0);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && std::strcmp(argv[1], keeperOption) == 0)
        return keepBox(QString::fromLocal8Bit(argv[2]));
    QCoreApplication application(argc, argv);
    QString help;
    const DriverOptions options = readOptions(QCoreApplication::arguments(), help);
    if (!options.failure.isEmpty()) {
        std::fprintf(stderr, "vesprel-driver: %s (see --help)\n", qPrintable(options.failure));
        return 1;
    }
    if (options.wantsHelp) {
        std::printf("%s", qPrintable(help));
        return 0;
    }
    if (options.wantsVersion) {
        std::printf("%s\n", qPrintable(programVersion("vesprel-driver")));
        return 0;
    }
    return serve(options);
}
