// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/console/console_command.h"
#include "desktop/script/line_pattern.h"

#include <QString>
#include <QStringList>
#include <QVector>

/** One line of a script that is carried out. */
struct ScriptStep
{
    enum class Kind {
        Command,     ///< A command of the console.
        WaitTime,    ///< Let ms go by.
        WaitForText, ///< Until a line that matches pattern is printed from now on.
        Expect,      ///< A line that matches pattern, printed since the script last did something.
        ExpectEval,  ///< Until the expression text is true in the page.
        Eval,        ///< Print the value of the expression text in the page.
        Key,         ///< Press the remote's key text, times times.
        Screenshot,  ///< Save the screen in the file text.
        Reload,      ///< Load the portal again by command, and wait until it has.
        Stay,        ///< The script has passed, the receiver stays.
    };

    Kind kind = Kind::Command;
    int line = 0;   ///< In the file, from 1.
    QString source; ///< The line as it stands there, without blanks around it.
    int testCase = 0;
    ConsoleCommand command;
    int ms = 0; ///< How long to wait, at most for all but WaitTime.
    QString text;
    LinePattern pattern;
    int times = 1;
};

/** The steps of a script, or what is wrong with its first bad line. */
struct ParsedScript
{
    QVector<ScriptStep> steps;
    QStringList testCases; ///< Their names; that of the steps before the first "test" is empty.
    QString failure;       ///< "LINE: ..." when the script is not to be run, otherwise empty.

    /** The files that the steps write, as the script names them. */
    QStringList outputs() const;
};

/** Reads a script; scriptHelp() tells its lines. Where none says otherwise a wait ends after 30 s.
 */
ParsedScript parseScript(const QString &text);

/** The lines of the help that only scripts know. */
QString scriptHelp();
