// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console.h"
#include "desktop/console/console_command.h"
#include "desktop/link/protocol_server.h"
#include "desktop/player/box_sound.h"
#include "desktop/receiver.h"
#include "desktop/receiver_options.h"
#include "desktop/recordings/ffmpeg_recordings.h"
#include "desktop/recordings/memory_recordings.h"
#include "desktop/screen/screen.h"
#include "desktop/script/script_session.h"
#include "desktop/termination_signals.h"
#include "desktop/traffic/replayer.h"
#include "desktop/traffic/traffic_recorder.h"
#include "desktop/watch/folder_watch.h"
#include "platform/box_paths.h"
#include "platform/environment.h"
#include "platform/one_line.h"
#include "platform/program_version.h"
#include "platform/trusted_certificates.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

using Player = ReceiverOptions::Player;

void printLine(std::FILE *stream, const QString &line)
{
    std::fprintf(stream, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stream);
}

int failWith(const QString &text)
{
    printLine(stderr, "vesprel-receiver: " + text);
    return 1;
}

/** Keeps the numbers of closed standard streams from being given to other files. */
void openStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            return;
    }
}

QStringList argumentList(int argc, char *argv[])
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments += QString::fromLocal8Bit(argv[index]);
    return arguments;
}

/** Prints the names of the files that would be written, one a line. */
void printOutputs(const ReceiverOptions &options, const ParsedScript &script)
{
    const QStringList files =
        script.outputs() + QStringList{options.reportFile, options.recordFile};
    for (const QString &file : files) {
        if (!file.isEmpty())
            printLine(stdout, QFileInfo(file).absoluteFilePath());
    }
}

/** Connects the receiver with what is on the screen, if that is one. */
void connectScreen(ProtocolServer &server, Receiver &receiver, const Screen &screen)
{
    if (!screen.plane)
        return;
    if (screen.program) {
        QObject::connect(&server, &ProtocolServer::peerJoined, screen.program.get(),
                         &ProgramWindow::follow);
        QObject::connect(&server, &ProtocolServer::lastPeerLeft, screen.program.get(),
                         [&screen] { screen.program->follow(0); });
    }
    QObject::connect(&receiver, &Receiver::viewportChanged, screen.plane.get(),
                     &VideoPlane::setViewport);
    QObject::connect(&receiver, &Receiver::noticeChanged, screen.notice.get(), &Notice::setText);
    QObject::connect(screen.notice.get(), &Notice::keyPressed, &receiver, &Receiver::leaveNotice);
    QObject::connect(&receiver, &Receiver::standbyChanged, screen.cover.get(),
                     &StandbyCover::setVisible);
}

/** What the files of the options hold. */
struct Inputs
{
    ParsedScript script;
    ParsedTraffic traffic;
};

/** Reads them; false, and a line for a person, when one cannot be used. */
bool readInputs(const ReceiverOptions &options, Inputs &inputs)
{
    if (!options.scriptFile.isEmpty())
        inputs.script = readScriptFile(options.scriptFile);
    if (!options.replayFile.isEmpty())
        inputs.traffic = readTrafficFile(options.replayFile);
    for (const QString &failure : {inputs.script.failure, inputs.traffic.failure}) {
        if (!failure.isEmpty())
            failWith(failure);
    }
    return inputs.script.failure.isEmpty() && inputs.traffic.failure.isEmpty();
}

void connectRecorder(ProtocolServer &server, TrafficRecorder &recorder)
{
    QObject::connect(&server, &ProtocolServer::commandReceived, &recorder,
                     &TrafficRecorder::noteCommand);
    QObject::connect(&server, &ProtocolServer::sent, &recorder,
                     [&recorder](Event event, const QByteArray &payload) {
                         recorder.noteSent(static_cast<int>(event), payload);
                     });
    QObject::connect(&server, &ProtocolServer::peerCountChanged, &recorder,
                     &TrafficRecorder::noteConnections);
    QObject::connect(&recorder, &TrafficRecorder::message,
                     [](const QString &line) { printLine(stdout, line); });
}

void connectReplayer(ProtocolServer &server, Receiver &receiver, Replayer &replayer)
{
    receiver.handCommandsTo(
        [&replayer](int type, const QByteArray &payload) { replayer.take(type, payload); });
    QObject::connect(&replayer, &Replayer::due, &server, &ProtocolServer::send);
    QObject::connect(&replayer, &Replayer::message, &receiver, &Receiver::message);
}

/** Loads the portal again when something in the folder changes. */
void startWatch(FolderWatch &watch, Receiver &receiver, const QString &folder)
{
    QObject::connect(&watch, &FolderWatch::changed, &receiver, [&receiver](const QString &name) {
        printLine(stdout, "changed: " + oneLine(name));
        receiver.reloadPortal();
    });
    if (folder.isEmpty())
        return;
    const QString failure = watch.start(folder);
    if (!failure.isEmpty())
        printLine(stdout, failure);
}

void connectScript(Receiver &receiver, ScriptSession &script)
{
    QObject::connect(&receiver, &Receiver::message, &script, &ScriptSession::notePrinted);
    QObject::connect(&script, &ScriptSession::message, &receiver, &Receiver::message);
    QObject::connect(&script, &ScriptSession::commandReached, &receiver,
                     &Receiver::runConsoleCommand);
    QObject::connect(&script, &ScriptSession::failed, &script,
                     [](const QString &line) { failWith(line); });
    QObject::connect(&script, &ScriptSession::ended, &script,
                     [](int code) { QCoreApplication::exit(code); });
}

/** The recordings of a box that can record, otherwise those that only pretend. */
std::unique_ptr<Recordings> openRecordings(Player player)
{
    if (player == Player::Simulated || QStandardPaths::findExecutable("ffmpeg").isEmpty())
        return std::make_unique<MemoryRecordings>();
    return std::make_unique<FfmpegRecordings>();
}

/** Opens the link and, if it is asked for, the file of its traffic; what went wrong, if anything.
 */
QString openLink(const ReceiverOptions &options, ProtocolServer &server, TrafficRecorder &recorder)
{
    const QString failure = server.listen(BoxPaths::receiverSocket());
    if (!failure.isEmpty() || options.recordFile.isEmpty())
        return failure;
    // Before the receiver, which answers at once.
    connectRecorder(server, recorder);
    return recorder.start(options.recordFile);
}

/** Prepares a script, which begins in the event loop, since it may end that; what went wrong. */
QString openScript(const ReceiverOptions &options, Receiver &receiver, ScriptSession &script)
{
    connectScript(receiver, script);
    QTimer::singleShot(0, &script, &ScriptSession::start);
    return options.controlSocket.isEmpty() ? QString() : script.listen(options.controlSocket);
}

/** Tells whoever waits for it that the receiver serves; what went wrong, if anything. */
QString tellReady(const ReceiverOptions &options, const Inputs &inputs, const QString &player)
{
    if (!inputs.traffic.warning.isEmpty())
        printLine(stdout, "replaying what is before the end: " + inputs.traffic.warning);
    printLine(stdout, QString("serving %1, player: %2 (help lists the commands)")
                          .arg(BoxPaths::receiverSocket(), player));
    QFile ready(options.readyFile);
    const bool isTold = options.readyFile.isEmpty() || ready.open(QIODevice::WriteOnly);
    return isTold ? QString() : ready.fileName() + ": " + ready.errorString();
}

/** Serves until it is asked to end; the exit code. */
int run(TerminationSignals &termination, const ReceiverOptions &options, const Inputs &inputs)
{
    ProtocolServer server;
    TrafficRecorder recorder;
    if (const QString failure = openLink(options, server, recorder); !failure.isEmpty())
        return failWith(failure);
    const Screen screen = openScreen(options);
    if (options.player == Player::Mpv && screen.description != "mpv")
        return failWith("--player=mpv needs mpv and an X display.");
    const std::unique_ptr<Recordings> recordings = openRecordings(options.player);
    Receiver receiver(server, *screen.player, *recordings);
    const QByteArray portal = QUrl(options.portal, QUrl::TolerantMode).toEncoded();
    receiver.setPortal(portal);
    Replayer replayer(inputs.traffic.messages, portal);
    if (!options.replayFile.isEmpty())
        connectReplayer(server, receiver, replayer);
    BoxSound sound;
    QObject::connect(&sound, &BoxSound::changed, screen.player.get(), &MediaPlayer::setSound);
    sound.start();
    Console console(STDIN_FILENO);
    std::unique_ptr<ScriptSession> script;

    const auto end = [&script] {
        if (!script || !script->abort("interrupted"))
            QCoreApplication::quit();
    };
    QObject::connect(&receiver, &Receiver::quitRequested, &receiver, end);
    QObject::connect(&termination, &TerminationSignals::received, &receiver, end);
    QObject::connect(&receiver, &Receiver::message,
                     [](const QString &lines) { printLine(stdout, lines); });
    QObject::connect(&console, &Console::lineRead, &receiver, [&receiver](const QString &line) {
        receiver.runConsoleCommand(parseConsoleLine(line));
    });
    connectScreen(server, receiver, screen);
    if (!options.scriptFile.isEmpty()) {
        script =
            std::make_unique<ScriptSession>(options.scriptFile, inputs.script, options.reportFile);
        if (const QString obstacle = openScript(options, receiver, *script); !obstacle.isEmpty())
            return failWith(obstacle);
    }
    FolderWatch watch;
    startWatch(watch, receiver, options.watchedFolder);
    if (const QString failure = tellReady(options, inputs, screen.description); !failure.isEmpty())
        return failWith(failure);
    // What goes on by itself would mix with what is replayed.
    if (options.replayFile.isEmpty())
        recordings->restore();
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
    // A reader of our output that goes away, or a terminal that another job holds, is no reason
    // to end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN);

    const ReceiverOptions options = parseReceiverOptions(argumentList(argc, argv));
    if (!options.failure.isEmpty())
        return failWith(options.failure + " (see --help)");
    if (options.wantsVersion) {
        printLine(stdout, programVersion("vesprel-receiver"));
        return 0;
    }
    Inputs inputs;
    if (!readInputs(options, inputs))
        return ScriptSession::Unreadable;
    if (options.wantsCheck) {
        printOutputs(options, inputs.script);
        return 0;
    }

    choosePlatform(options.wantsHelp ? Player::Simulated : options.player);
    QGuiApplication application(argc, argv);
    if (options.wantsHelp) {
        printLine(stdout, receiverHelp());
        return 0;
    }
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // The portal that the program loads is probed from here, too.
    if (qEnvironmentVariableIsSet(Environment::trust))
        trustCertificates(qEnvironmentVariable(Environment::trust));
    TerminationSignals termination;
    return run(termination, options, inputs);
}
