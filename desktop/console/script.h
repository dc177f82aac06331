// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/console/console_command.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

/** One line of a script: a wait, or a command of the console. */
struct ScriptStep
{
    enum class Kind { Command, WaitTime, WaitForText };

    Kind kind = Kind::Command;
    ConsoleCommand command;
    int waitMs = 0;
    QString text;
};

/** The steps of a script, or what is wrong with its first bad line. */
struct ParsedScript
{
    QVector<ScriptStep> steps;
    QString failure; ///< "line N: ..." when the script is not to be run, otherwise empty.
};

/**
 * Reads a script: one command of the console a line, "wait SECONDS", "wait for TEXT", and comments
 * from "#" at the beginning of a line on. SECONDS is 0 to 86400 and may have a fraction.
 */
ParsedScript parseScript(const QString &text);

/** The lines of the help that only scripts know. */
QString scriptHelp();

/** Runs the steps of a script one after the other. */
class Script : public QObject
{
    Q_OBJECT

public:
    explicit Script(const QVector<ScriptStep> &steps, QObject *parent = nullptr);

    /** Runs up to the first wait, and on from there by itself. */
    void start() { runOn(); }

    /** Tells of lines that the receiver printed; a "wait for" ends with one that begins so. */
    void notePrinted(const QString &printed);

signals:
    /** A command is to be carried out. */
    void commandReached(const ConsoleCommand &command);

    /** The last step is done. */
    void finished();

private:
    void runOn();

    QVector<ScriptStep> m_steps;
    int m_next = 0;
    QString m_awaited;
    QTimer m_wait;
};
