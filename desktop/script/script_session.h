// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/script/live_box.h"
#include "desktop/script/program_link.h"
#include "desktop/script/script_runner.h"

#include <QDateTime>
#include <QObject>
#include <QString>

/** A script on the box that runs: carries it out, tells what came of it and writes the report. */
class ScriptSession : public QObject
{
    Q_OBJECT

public:
    /** Exit codes of a receiver that ran a script. */
    enum ExitCode { Passed = 0, Failed = 1, Unreadable = 2 };

    /** The name is that of the script's file; an empty name of a report: none is wanted. */
    ScriptSession(const QString &name, const ParsedScript &script, const QString &reportFile,
                  QObject *parent = nullptr);

    /** Where the program is to connect; what went wrong as a sentence, otherwise empty. */
    QString listen(const QString &path) { return m_link.listen(path); }

    void start();

    /** Ends the script as failed, if it still runs; false if it does not. */
    bool abort(const QString &reason);

    /** Tells of lines that the receiver printed. */
    void notePrinted(const QString &printed) { m_runner.notePrinted(printed); }

signals:
    /** A command is to be carried out. */
    void commandReached(const ConsoleCommand &command);

    /** A line to be printed. */
    void message(const QString &line);

    /** What is wrong, a line. */
    void failed(const QString &line);

    /** The receiver is to end with this code. */
    void ended(int exitCode);

private:
    void conclude();
    bool writeReport();

    QString m_name;
    ParsedScript m_script;
    QString m_reportFile;
    QDateTime m_start;
    ProgramLink m_link;
    LiveBox m_box;
    ScriptRunner m_runner;
    bool m_isRunning = false;
};

/** Reads the script of this file, for its user: a failure names the file, "FILE:LINE: ...". */
ParsedScript readScriptFile(const QString &name);
