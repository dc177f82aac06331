// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

/** The command line of the check. */
struct CheckOptions
{
    QString socket;    ///< Path of the receiver's socket.
    QString url;       ///< What is played; empty: nothing.
    QString junitFile; ///< Empty: no report as JUnit.
    bool sendsAll = false;
    std::chrono::seconds timeLimit{300};
    bool wantsHelp = false;
    bool wantsVersion = false;
    QString failure; ///< What is wrong with the command line, otherwise empty.
};

/**
 * Reads the command line; the first argument is the program's own name. Help is set to the text of
 * --help. Needs an application object.
 */
CheckOptions parseCheckOptions(const QStringList &arguments, QString &help);
