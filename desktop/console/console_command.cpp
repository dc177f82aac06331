// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console_command.h"

#include "desktop/link/payload.h"
#include "platform/one_line.h"

#include <QStringList>

#include <optional>

namespace {

using Action = ConsoleCommand::Action;

/** Commands that are more than an event. */
struct LocalRow
{
    const char *words;
    const char *argument; ///< Empty: none.
    const char *help;
    Action action;
};

constexpr LocalRow localRows[] = {
    {"usb mount", "NAME", "the disk NAME appears below /media", Action::MountUsb},
    {"usb unmount", "NAME", "it goes, and keeps what it holds", Action::UnmountUsb},
    {"reload", "", "load the portal again", Action::Reload},
    {"help", "", "this list", Action::Help},
    {"quit", "", "end the receiver", Action::Quit},
};

ConsoleCommand explain(const QString &text)
{
    ConsoleCommand command;
    command.action = Action::Explain;
    command.text = text;
    return command;
}

/** What follows these words in a line that begins with them, however many blanks are between. */
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
    return QString("  %1 %2").arg(usage, -16).arg(help);
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

} // namespace

ConsoleCommand parseConsoleLine(const QString &line)
{
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return {};
    for (const LocalRow &row : localRows) {
        const auto argument = argumentsAfter(row.words, trimmed);
        if (!argument || argument->isEmpty() != QString(row.argument).isEmpty())
            continue;
        ConsoleCommand command;
        command.action = row.action;
        command.text = *argument;
        return command;
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
        lines += helpLine(QString("%1 %2").arg(row.words, row.argument).trimmed(), row.help);
    return lines.join('\n');
}
