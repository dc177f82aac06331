// SPDX-License-Identifier: Apache-2.0
#include "desktop/receiver_options.h"

#include "desktop/console/console_command.h"
#include "desktop/script/script_parser.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

namespace {

const char description[] =
    "The receiver of a box, on a PC: serves the local socket of the box, plays, records and sends\n"
    "the events of a box. Each line of the standard input is a command.";

const char environment[] =
    "Environment:\n"
    "  VESPREL_ROOT  the folder that stands for the box's file system; the default is\n"
    "                ~/.local/share/vesprel/box. In it: home/.sock.vesprel (the socket),\n"
    "                home/recordings.json (the tasks), media/recordings (what was recorded).\n"
    "                A path that does not exist is also looked for below it.\n"
    "  DISPLAY       the X display of the video.";

/** The parser, and the options that it knows. */
struct CommandLine
{
    CommandLine()
    {
        parser.setApplicationDescription(description);
        parser.addOptions({help, version, player, silent, portal, watch, script, junit, record,
                           replay, control, check, ready});
    }

    const QCommandLineOption help = {{"h", "help"}, "Prints this text and ends."};
    const QCommandLineOption version = {"version", "Prints version and build and ends."};
    const QCommandLineOption player = {
        "player",
        "What plays and records: mpv (and ffmpeg), or simulated, which shows a test picture, "
        "records "
        "nothing and needs neither. Default: mpv where it and a display exist.",
        "mpv|simulated"};
    const QCommandLineOption portal = {
        "portal",
        "Announces this portal to each program that connects, and again when one asks for the "
        "previous site or a reboot.",
        "URL"};
    const QCommandLineOption silent = {"silent", "mpv makes no sound."};
    const QCommandLineOption watch = {
        "watch", "Loads the portal again when a file in this folder changes.", "FOLDER"};
    const QCommandLineOption script = {
        "script",
        "Runs the lines of this file, then ends: with 0 if all passed, 1 if one failed, 2 if the "
        "file cannot be read.",
        "FILE"};
    const QCommandLineOption junit = {"junit", "Writes a JUnit report of the script.", "FILE"};
    const QCommandLineOption record = {
        "record", "Writes every message of the link with its time, one JSON object a line.",
        "FILE"};
    const QCommandLineOption replay = {
        "replay",
        "Plays and records nothing: answers and events are those of such a file, at their times.",
        "FILE"};
    const QCommandLineOption control = {
        "control",
        "The socket by which scripts look into pages; the program is to be started with it in "
        "VESPREL_DRIVER_SOCKET and QT_QPA_GENERIC_PLUGINS=vesprel-driver.",
        "SOCKET"};
    const QCommandLineOption check = {
        "check",
        "Reads the files of the other options, prints the names of those that would be written, "
        "and ends."};
    const QCommandLineOption ready = {
        "ready", "Makes this file when programs can connect, for scripts that wait for it.",
        "FILE"};
    QCommandLineParser parser;
};

} // namespace

ReceiverOptions parseReceiverOptions(const QStringList &arguments)
{
    CommandLine line;
    ReceiverOptions options;
    if (!line.parser.parse(arguments))
        options.failure = line.parser.errorText();
    else if (const QStringList surplus = line.parser.positionalArguments(); !surplus.isEmpty())
        options.failure = "Unexpected argument: " + surplus.first();
    options.wantsHelp = line.parser.isSet(line.help);
    options.wantsVersion = line.parser.isSet(line.version);
    options.portal = line.parser.value(line.portal);
    options.isSilent = line.parser.isSet(line.silent);
    options.watchedFolder = line.parser.value(line.watch);
    options.scriptFile = line.parser.value(line.script);
    options.reportFile = line.parser.value(line.junit);
    options.controlSocket = line.parser.value(line.control);
    options.recordFile = line.parser.value(line.record);
    options.replayFile = line.parser.value(line.replay);
    options.wantsCheck = line.parser.isSet(line.check);
    options.readyFile = line.parser.value(line.ready);
    const QString name = line.parser.value(line.player);
    if (name == "mpv")
        options.player = ReceiverOptions::Player::Mpv;
    else if (name == "simulated")
        options.player = ReceiverOptions::Player::Simulated;
    else if (line.parser.isSet(line.player))
        options.failure = "There is no player \"" + name + "\", only mpv and simulated.";
    if (!options.reportFile.isEmpty() && options.scriptFile.isEmpty())
        options.failure = "--junit reports on a script; name one with --script.";
    return options;
}

QString receiverHelp()
{
    return QString("%1\n%2\n\nCommands:\n%3\n\nIn scripts also:\n%4")
        .arg(CommandLine().parser.helpText(), environment, consoleHelp(), scriptHelp());
}
