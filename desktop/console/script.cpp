// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/script.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>

namespace {

constexpr double longestWaitSeconds = 86400.0;

ParsedScript failure(int line, const QString &reason)
{
    return {{}, QString("line %1: %2").arg(line).arg(reason)};
}

/** Reads a line that begins with "wait"; false when it is no wait that could be done. */
bool readWait(const QString &argument, ScriptStep &step)
{
    static const QRegularExpression forText("^for\\s+(\\S.*)$");
    const QRegularExpressionMatch match = forText.match(argument);
    if (match.hasMatch()) {
        step.kind = ScriptStep::Kind::WaitForText;
        step.text = match.captured(1);
        return true;
    }
    bool isNumber = false;
    const double seconds = argument.toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0.0 && seconds <= longestWaitSeconds))
        return false;
    step.kind = ScriptStep::Kind::WaitTime;
    step.waitMs = static_cast<int>(std::lround(seconds * 1000.0));
    return true;
}

} // namespace

ParsedScript parseScript(const QString &text)
{
    static const QRegularExpression wait("^wait\\b\\s*(.*)$");
    ParsedScript script;
    int number = 0;
    const QStringList lines = text.split('\n');
    for (const QString &line : lines) {
        ++number;
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith('#'))
            continue;
        ScriptStep step;
        const QRegularExpressionMatch match = wait.match(trimmed);
        if (match.hasMatch()) {
            if (!readWait(match.captured(1), step))
                return failure(number, "Usage: wait SECONDS, or wait for TEXT");
        } else {
            step.command = parseConsoleLine(trimmed);
            if (step.command.action == ConsoleCommand::Action::Explain)
                return failure(number, step.command.text);
        }
        script.steps.append(step);
    }
    return script;
}

QString scriptHelp()
{
    return "  wait SECONDS     in a script: waits, for instance 1.5\n"
           "  wait for TEXT    in a script: waits for the next printed line that begins with TEXT\n"
           "  # ...            in a script: a comment";
}

Script::Script(const QVector<ScriptStep> &steps, QObject *parent)
    : QObject(parent)
    , m_steps(steps)
{
    m_wait.setSingleShot(true);
    connect(&m_wait, &QTimer::timeout, this, &Script::runOn);
}

void Script::notePrinted(const QString &printed)
{
    if (m_awaited.isEmpty())
        return;
    const QStringList lines = printed.split('\n');
    for (const QString &line : lines) {
        if (!line.startsWith(m_awaited))
            continue;
        m_awaited.clear();
        m_wait.start(0); // Whoever prints is in the middle of something.
        return;
    }
}

void Script::runOn()
{
    while (m_next < m_steps.size()) {
        const ScriptStep &step = m_steps[m_next++];
        switch (step.kind) {
        case ScriptStep::Kind::Command:
            emit commandReached(step.command);
            if (step.command.action == ConsoleCommand::Action::Quit)
                return;
            break;
        case ScriptStep::Kind::WaitTime: m_wait.start(step.waitMs); return;
        case ScriptStep::Kind::WaitForText: m_awaited = step.text; return;
        }
    }
    emit finished();
}
