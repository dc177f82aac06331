// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/script_session.h"

#include <QFile>

ScriptSession::ScriptSession(const QString &name, const ParsedScript &script,
                             const QString &reportFile, QObject *parent)
    : QObject(parent)
    , m_name(name)
    , m_script(script)
    , m_reportFile(reportFile)
    , m_box(m_link)
    , m_runner(script, m_box)
{
    connect(&m_runner, &ScriptRunner::commandReached, this, &ScriptSession::commandReached);
    connect(&m_runner, &ScriptRunner::message, this, &ScriptSession::message);
    connect(&m_runner, &ScriptRunner::finished, this, &ScriptSession::conclude);
    connect(&m_link, &ProgramLink::programGone, this, [this] {
        // Whoever stayed after the script has nothing left to look at.
        if (!abort("the program has ended"))
            emit ended(Passed);
    });
}

void ScriptSession::start()
{
    m_isRunning = true;
    m_start = QDateTime::currentDateTime();
    m_runner.start();
}

bool ScriptSession::abort(const QString &reason)
{
    if (!m_isRunning)
        return false;
    m_runner.abort(reason);
    return true;
}

void ScriptSession::conclude()
{
    m_isRunning = false;
    const ScriptResult &result = m_runner.result();
    const bool isReported = writeReport();
    if (result.hasFailed())
        emit failed(failureLine(m_name, m_script, result));
    else
        emit message("script passed: " + m_name);
    if (!m_runner.wantsToStay())
        emit ended(result.hasFailed() || !isReported ? Failed : Passed);
}

bool ScriptSession::writeReport()
{
    if (m_reportFile.isEmpty())
        return true;
    const QByteArray report = junitReport(m_name, m_script, m_runner.result(), m_start);
    QFile file(m_reportFile);
    if (file.open(QIODevice::WriteOnly) && file.write(report) == report.size() && file.flush())
        return true;
    emit failed(QString("cannot write the report %1: %2").arg(m_reportFile, file.errorString()));
    return false;
}

ParsedScript readScriptFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, {}, QString("%1: %2").arg(name, file.errorString())};
    ParsedScript script = parseScript(QString::fromUtf8(file.readAll()));
    if (!script.failure.isEmpty())
        script.failure.prepend(name + ':');
    return script;
}
