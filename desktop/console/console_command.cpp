// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console_command.h"

#include "desktop/link/payload.h"
#include "platform/one_line.h"

#include <QStringList>

#include <cmath>
#include <optional>

namespace {

using Action = ConsoleCommand::Action;

enum class Argument { None, Name, Seconds, Milliseconds };

/** Commands that are more than an event. */
struct LocalRow
{
    const char *words;
    const char *argumentName;
    const char *help;
    Action action;
    Argument argument;
};

constexpr LocalRow localRows[] = {
    {"usb mount", "NAME", "the disk NAME appears below /media", Action::MountUsb, Argument::Name},
    {"usb unmount", "NAME", "it goes, and keeps what it holds", Action::UnmountUsb, Argument::Name},
    {"reload", "", "load the portal again", Action::Reload, Argument::None},
    {"receiver silent", "SECONDS", "does nothing for so long, then all of it", Action::Silence,
     Argument::Seconds},
    {"receiver slow", "MS", "does everything so much later, 0 as usual", Action::Slow,
     Argument::Milliseconds},
    {"receiver gone", "", "leaves the program alone, as one that died", Action::Leave,
     Argument::None},
    {"help", "", "this list", Action::Help, Argument::None},
    {"quit", "", "end the receiver", Action::Quit, Argument::None},
};

constexpr double longestSeconds = 86400.0;
constexpr int longestDelay = 600000; ///< ms

ConsoleCommand explain(const QString &text)
{
    ConsoleCommand command;
    command.action = Action::Explain;
    command.text = text;
    return command;
}

std::optional<QByteArray> readIntegers(const QString &arguments, int count)
{
    const QStringList words = arguments.split(' ', Qt::SkipEmptyParts);
    if (words.size() != count)
        return std::nullopt;
    QByteArray payload;
    for (const QString &word : words) {
        bool isNumber = false;
        payload += integerPayload(word.toInt(&isNumber));
        if (!isNumber)
            return std::nullopt;
    }
    return payload;
}

std::optional<QByteArray> readText(const QByteArray &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

/** The payload of an event from its arguments as they were typed. */
std::optional<QByteArray> readPayload(PayloadForm form, const QString &arguments)
{
    switch (form) {
    case PayloadForm::Nothing:
        return arguments.isEmpty() ? std::optional(QByteArray()) : std::nullopt;
    case PayloadForm::OnOff:
    case PayloadForm::Integer: return readIntegers(arguments, 1);
    case PayloadForm::TwoIntegers: return readIntegers(arguments, 2);
    case PayloadForm::Area: return readIntegers(arguments, 4);
    case PayloadForm::Utf8: return readText(arguments.toUtf8());
    case PayloadForm::Latin1:
    case PayloadForm::Json: return readText(arguments.toLatin1());
    }
    return std::nullopt;
}

QString usage(const EventRow &row)
{
    return QString("%1 %2").arg(row.consoleWords, row.consoleArguments).trimmed();
}

QString helpLine(const QString &usage, const char *help)
{
    return QString("  %1 %2").arg(usage, -23).arg(help);
}

ConsoleCommand sendCommand(const EventRow &row, const QString &arguments)
{
    const std::optional<QByteArray> payload = readPayload(row.form, arguments);
    if (!payload)
        return explain(QString("Usage: %1").arg(usage(row)));
    ConsoleCommand command;
    command.action = Action::SendEvent;
    command.event = row.event;
    command.payload = *payload;
    return command;
}

/** Reads the argument into the command; false when it is none. */
bool readArgument(Argument argument, const QString &text, ConsoleCommand &command)
{
    bool isGood = true;
    switch (argument) {
    case Argument::None: return text.isEmpty();
    case Argument::Name: command.text = text; return true;
    case Argument::Seconds: {
        const std::optional<int> ms = readSeconds(text);
        command.ms = ms.value_or(0);
        return ms.has_value();
    }
    case Argument::Milliseconds:
        command.ms = text.toInt(&isGood);
        return isGood && command.ms >= 0 && command.ms <= longestDelay;
    }
    return false;
}

QString usage(const LocalRow &row)
{
    return QString("%1 %2").arg(row.words, row.argumentName).trimmed();
}

ConsoleCommand localCommand(const LocalRow &row, const QString &arguments)
{
    ConsoleCommand command;
    command.action = row.action;
    if (!readArgument(row.argument, arguments, command))
        return explain(QString("Usage: %1").arg(usage(row)));
    return command;
}

} // namespace

std::optional<QString> argumentsAfter(const QString &words, const QString &line)
{
    int position = 0;
    const QStringList list = words.split(' ');
    for (const QString &word : list) {
        const int end = position + word.size();
        if (line.midRef(position, word.size()) != word ||
            (end < line.size() && !line[end].isSpace()))
            return std::nullopt;
        position = end;
        while (position < line.size() && line[position].isSpace())
            ++position;
    }
    return line.mid(position);
}

std::optional<int> readSeconds(const QString &text)
{
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0.0 && seconds <= longestSeconds))
        return std::nullopt;
    return int(std::lround(seconds * 1000.0));
}

ConsoleCommand parseConsoleLine(const QString &line)
{
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return {};
    for (const LocalRow &row : localRows) {
        const auto argument = argumentsAfter(row.words, trimmed);
        // Without a name these words are an event's.
        if (argument && !(row.argument == Argument::Name && argument->isEmpty()))
            return localCommand(row, *argument);
    }
    for (const EventRow &row : eventRows) {
        if (const auto arguments = argumentsAfter(row.consoleWords, trimmed))
            return sendCommand(row, *arguments);
    }
    return explain(QString("Unknown command: %1 (try help)").arg(oneLine(trimmed)));
}

QString consoleHelp()
{
    QStringList lines;
    for (const EventRow &row : eventRows)
        lines += helpLine(usage(row), row.consoleHelp);
    for (const LocalRow &row : localRows)
        lines += helpLine(usage(row), row.help);
    return lines.join('\n');
}
