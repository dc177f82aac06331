// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/script_parser.h"

#include "desktop/display/key_symbols.h"

#include <QRegularExpression>

namespace {

using Kind = ScriptStep::Kind;

constexpr int usualLimitMs = 30000; ///< ms
constexpr int mostPresses = 1000;

/** What is wrong with a line; empty when it is read. */
using Failure = QString;

Failure readSleep(ScriptStep &step)
{
    const std::optional<int> ms = readSeconds(step.text);
    step.ms = ms.value_or(0);
    return ms ? Failure() : "Usage: wait SECONDS, or wait for TEXT";
}

Failure readPattern(ScriptStep &step)
{
    step.pattern = LinePattern(step.text);
    return step.pattern.failure();
}

/** The remote's key and how often: "down 3", but "3" alone is a digit. */
Failure readKey(ScriptStep &step)
{
    static const QRegularExpression counted("^(.*\\S)\\s+(\\d+)$");
    step.text = step.text.simplified();
    const QRegularExpressionMatch match = counted.match(step.text);
    if (match.hasMatch()) {
        step.text = match.captured(1);
        step.times = match.captured(2).toInt();
        if (step.times < 1 || step.times > mostPresses)
            return QString("A key is pressed 1 to %1 times").arg(mostPresses);
    }
    if (remoteKeySymbol(step.text))
        return {};
    return QString("The remote has no key \"%1\", only %2")
        .arg(step.text, remoteKeyNames().join(", "));
}

Failure readReload(ScriptStep &step)
{
    step.command = parseConsoleLine("reload");
    return {};
}

Failure readAny(ScriptStep &) { return {}; }

enum class Text { None, Needed };

/** A line that only scripts know. */
struct VerbRow
{
    const char *words;
    const char *arguments;
    const char *help;
    Kind kind;
    Text text;
    bool takesLimit;
    Failure (*read)(ScriptStep &step);
};

constexpr VerbRow verbRows[] = {
    {"wait for", "TEXT", "waits for the next printed line that begins with TEXT", Kind::WaitForText,
     Text::Needed, true, readPattern},
    {"wait", "SECONDS", "waits, for instance 1.5", Kind::WaitTime, Text::Needed, false, readSleep},
    {"expect eval", "EXPRESSION", "fails unless it becomes true in the page", Kind::ExpectEval,
     Text::Needed, true, readAny},
    {"expect", "TEXT", "fails unless a line that begins with TEXT is printed", Kind::Expect,
     Text::Needed, true, readPattern},
    {"eval", "EXPRESSION", "prints \"value: ...\" of it in the page on screen", Kind::Eval,
     Text::Needed, true, readAny},
    {"key", "NAME [TIMES]", "presses a key of the remote", Kind::Key, Text::Needed, true, readKey},
    {"screenshot", "FILE", "saves the whole screen as PNG", Kind::Screenshot, Text::Needed, false,
     readAny},
    {"reload", "", "loads the portal again and waits until it has", Kind::Reload, Text::None, true,
     readReload},
    {"stay", "", "ends the script, not the receiver", Kind::Stay, Text::None, false, readAny},
};

QString verbUsage(const VerbRow &row)
{
    return QString("%1 %2").arg(row.words, row.arguments).trimmed() +
           (row.takesLimit ? " [within SECONDS]" : "");
}

/** Takes "within SECONDS" off the end of the text, if it is there. */
Failure takeLimit(ScriptStep &step)
{
    static const QRegularExpression limit("^(.*?)\\s*\\bwithin\\s+([\\w.+-]+)$");
    const QRegularExpressionMatch match = limit.match(step.text);
    if (!match.hasMatch())
        return {};
    const std::optional<int> ms = readSeconds(match.captured(2));
    if (!ms)
        return QString("\"%1\" is no number of seconds").arg(match.captured(2));
    step.text = match.captured(1);
    step.ms = *ms;
    return {};
}

Failure readVerb(const VerbRow &row, ScriptStep &step)
{
    step.kind = row.kind;
    if (row.takesLimit) {
        const Failure failure = takeLimit(step);
        if (!failure.isEmpty())
            return failure;
    }
    if (step.text.isEmpty() == (row.text == Text::Needed))
        return "Usage: " + verbUsage(row);
    return row.read(step);
}

/** Reads a line that is to be carried out; its ms holds the limit. */
Failure readStep(const QString &line, ScriptStep &step)
{
    for (const VerbRow &row : verbRows) {
        if (const auto arguments = argumentsAfter(row.words, line)) {
            step.text = *arguments;
            return readVerb(row, step);
        }
    }
    step.command = parseConsoleLine(line);
    return step.command.action == ConsoleCommand::Action::Explain ? step.command.text : Failure();
}

/** Reads lines one after the other. */
class ScriptReader
{
public:
    /** False when the line is bad. */
    bool read(const QString &line, int number);

    ParsedScript result = {{}, {QString()}, {}};

private:
    Failure readLimit(const QString &seconds);

    int m_limit = usualLimitMs;
};

Failure ScriptReader::readLimit(const QString &seconds)
{
    const std::optional<int> ms = readSeconds(seconds);
    m_limit = ms.value_or(m_limit);
    return ms ? Failure() : "Usage: limit SECONDS";
}

bool ScriptReader::read(const QString &line, int number)
{
    Failure failure;
    if (const auto name = argumentsAfter("test", line)) {
        result.testCases += *name;
        failure = name->isEmpty() ? Failure("Usage: test NAME") : Failure();
    } else if (const auto seconds = argumentsAfter("limit", line)) {
        failure = readLimit(*seconds);
    } else {
        ScriptStep step;
        step.line = number;
        step.source = line;
        step.testCase = result.testCases.size() - 1;
        step.ms = m_limit;
        failure = readStep(line, step);
        result.steps += step;
    }
    if (!failure.isEmpty())
        result = {{}, {}, QString("%1: %2").arg(number).arg(failure)};
    return failure.isEmpty();
}

QString scriptHelpLine(const QString &usage, const char *help)
{
    return QString("  %1 %2").arg(usage, -23).arg(help);
}

} // namespace

QStringList ParsedScript::outputs() const
{
    QStringList files;
    for (const ScriptStep &step : steps) {
        if (step.kind == Kind::Screenshot)
            files += step.text;
    }
    return files;
}

ParsedScript parseScript(const QString &text)
{
    ScriptReader reader;
    int number = 0;
    const QStringList lines = text.split('\n');
    for (const QString &line : lines) {
        ++number;
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith('#'))
            continue;
        if (!reader.read(trimmed, number))
            break;
    }
    return reader.result;
}

QString scriptHelp()
{
    QStringList lines;
    for (const VerbRow &row : verbRows)
        lines += scriptHelpLine(QString("%1 %2").arg(row.words, row.arguments).trimmed(), row.help);
    lines += scriptHelpLine("limit SECONDS", "how long each wait below may last (30)");
    lines += scriptHelpLine("... within SECONDS", "at the end of a line: how long that may last");
    lines += scriptHelpLine("test NAME", "begins a test case of the report");
    lines += scriptHelpLine("# ...", "a comment");
    return lines.join('\n');
}
