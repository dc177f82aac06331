#include "desktop/console.h"
#include "desktop/console_command.h"
#include "desktop/memory_recordings.h"
#include "desktop/protocol_server.h"
#include "desktop/receiver.h"
#include "desktop/simulated_player.h"
#include "desktop/termination_signals.h"
#include "platform/box_paths.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

void printLine(std::FILE *stream, const QString &line)
{
    std::fprintf(stream, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stream);
}

/** Keeps the numbers of closed standard streams from being given to other files. */
void openStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            return;
    }
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
    // A reader of our output that goes away, or a terminal that another job holds, is no reason
    // to end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN);

    QCoreApplication application(argc, argv);
    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::received, &application,
                     &QCoreApplication::quit);

    ProtocolServer server;
    SimulatedPlayer player;
    MemoryRecordings recordings;
    Receiver receiver(server, player, recordings);
    QObject::connect(&receiver, &Receiver::message, &receiver,
                     [](const QString &lines) { printLine(stdout, lines); });
    QObject::connect(&receiver, &Receiver::quitRequested, &application, &QCoreApplication::quit);

    const QString path = BoxPaths::receiverSocket();
    const QString failure = server.listen(path);
    if (!failure.isEmpty()) {
        printLine(stderr, "vesprel-receiver: " + failure);
        return 1;
    }
    printLine(stdout, QString("serving %1 (help lists the commands)").arg(path));

    Console console(STDIN_FILENO);
    QObject::connect(&console, &Console::lineRead, &receiver, [&receiver](const QString &line) {
        receiver.runConsoleCommand(parseConsoleLine(line));
    });
    return QCoreApplication::exec();
}
