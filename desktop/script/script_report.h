// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/script/script_parser.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

/** How one step ended. */
struct StepResult
{
    int step = 0; ///< Its number in the script, from 0.
    qint64 ms = 0;
    QString failure;    ///< Empty: it passed.
    QStringList output; ///< Of a step that failed: what was printed last.
};

/** How a script ended. Steps without a result were not reached. */
struct ScriptResult
{
    QVector<StepResult> steps;
    bool hasFailed() const { return !steps.isEmpty() && !steps.last().failure.isEmpty(); }
};

/**
 * The result as a JUnit report, XML in UTF-8: a test case for each "test" of the script, or, where
 * it has none, for each step that can fail. The name is that of the script's file.
 */
QByteArray junitReport(const QString &name, const ParsedScript &script, const ScriptResult &result,
                       const QDateTime &start);

/** The end of a failed script in one line, "FILE:LINE: LINE'S TEXT: reason"; otherwise empty. */
QString failureLine(const QString &name, const ParsedScript &script, const ScriptResult &result);
