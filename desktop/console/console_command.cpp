// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console_command.h"

#include "desktop/link/payload.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

using Action = ConsoleCommand::Action;
using Carries = ConsoleCommand::Carries;

struct Row
{
    const char *words;
    const char *arguments;
    const char *effect;
    Action action;
    Event event;
    Carries carries;
};

constexpr Row sends(const char *words, const char *arguments, const char *effect, Event event,
                    Carries carries)
{
    return {words, arguments, effect, Action::SendEvent, event, carries};
}

constexpr Row rows[] = {
    {"help", "", "this list", Action::Help, {}, Carries::Nothing},
    sends("usb mount", "", "a USB storage was mounted", Event::UsbMounted, Carries::Nothing),
    sends("usb unmount", "", "it was unmounted", Event::UsbUnmounted, Carries::Nothing),
    sends("power off", "", "the box goes to standby", Event::PowerOff, Carries::Nothing),
    sends("power on", "", "the box wakes up", Event::PowerOn, Carries::Nothing),
    sends("portal", "URL", "open another portal", Event::NewPortal, Carries::Text),
    sends("rec started", "N", "recording N started", Event::PvrRecordingStarted, Carries::Number),
    sends("rec finished", "N", "recording N finished", Event::PvrRecordingFinished,
          Carries::Number),
    sends("rec error", "N", "recording N failed", Event::PvrRecordingError, Carries::Number),
    sends("play start", "", "playback started", Event::PlayStart, Carries::Nothing),
    sends("play end", "", "playback ended", Event::PlayEnd, Carries::Nothing),
    sends("play progress", "", "the medium is progressive", Event::PlayProgressive,
          Carries::Nothing),
    sends("time", "TOTAL POS", "length and position in ms", Event::PlayTimeStatus,
          Carries::TwoNumbers),
    sends("audio pids", "JSON", "list of the audio tracks", Event::AudioPids, Carries::Text),
    sends("audio pid", "N", "current audio track", Event::AudioPid, Carries::Number),
    sends("sub pids", "JSON", "list of the subtitle tracks", Event::SubtitlePids, Carries::Text),
    sends("sub pid", "N", "current subtitle track", Event::SubtitlePid, Carries::Number),
    {"quit", "", "end the receiver", Action::Quit, {}, Carries::Nothing},
};

ConsoleCommand explain(const QString &text)
{
    ConsoleCommand command;
    command.action = Action::Explain;
    command.text = text;
    return command;
}

QString usage(const Row &row) { return QString("%1 %2").arg(row.words, row.arguments).trimmed(); }

bool readNumbers(const QString &arguments, ConsoleCommand &command)
{
    const QStringList words = arguments.split(' ', Qt::SkipEmptyParts);
    bool firstIsNumber = false;
    bool secondIsNumber = true;
    command.first = words.value(0).toInt(&firstIsNumber);
    if (command.carries == Carries::TwoNumbers)
        command.second = words.value(1).toInt(&secondIsNumber);
    const int expected = command.carries == Carries::TwoNumbers ? 2 : 1;
    return words.size() == expected && firstIsNumber && secondIsNumber;
}

bool readArguments(const QString &arguments, ConsoleCommand &command)
{
    switch (command.carries) {
    case Carries::Nothing: return arguments.isEmpty();
    case Carries::Text: command.text = arguments; return !arguments.isEmpty();
    case Carries::Number:
    case Carries::TwoNumbers: return readNumbers(arguments, command);
    }
    return false;
}

/** Matches a line that starts with the words of a row and captures the rest, as it is. */
QRegularExpressionMatch matchRow(const Row &row, const QString &line)
{
    const QString words = QString(row.words).replace(' ', "\\s+");
    const QRegularExpression pattern(QString("^%1(?:\\s+(.*))?$").arg(words));
    return pattern.match(line);
}

} // namespace

ConsoleCommand parseConsoleLine(const QString &line)
{
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return {};
    for (const Row &row : rows) {
        const QRegularExpressionMatch match = matchRow(row, trimmed);
        if (!match.hasMatch())
            continue;
        ConsoleCommand command;
        command.action = row.action;
        command.event = row.event;
        command.carries = row.carries;
        if (!readArguments(match.captured(1), command))
            return explain(QString("Usage: %1").arg(usage(row)));
        return command;
    }
    return explain(QString("Unknown command: %1 (try help)").arg(oneLine(trimmed)));
}

QString consoleHelp()
{
    QStringList lines;
    for (const Row &row : rows)
        lines += QString("  %1 %2").arg(usage(row), -16).arg(row.effect);
    return lines.join('\n');
}

QByteArray eventPayload(const ConsoleCommand &command)
{
    switch (command.carries) {
    case Carries::Nothing: break;
    case Carries::Number: return integerPayload(command.first);
    case Carries::TwoNumbers: return integerPayload(command.first, command.second);
    case Carries::Text:
        // Addresses are the one text that the other side does not read as UTF-8.
        return command.event == Event::NewPortal ? command.text.toLatin1() : command.text.toUtf8();
    }
    return {};
}
