// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/script/box_control.h"
#include "desktop/script/script_parser.h"
#include "desktop/script/script_report.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

/**
 * Runs the steps of a script one after the other, up to the first that fails. GUI thread.
 */
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    /** The control must outlive it. */
    ScriptRunner(const ParsedScript &script, BoxControl &control, QObject *parent = nullptr);

    /** Runs up to the first wait, and on from there by itself. */
    void start();

    /** Ends a script that is running: the step that it is at fails for this reason. */
    void abort(const QString &reason);

    /** Tells of lines that the receiver printed. */
    void notePrinted(const QString &printed);

    const ScriptResult &result() const { return m_result; }

    /** Whether the receiver is to go on when the script has ended. */
    bool wantsToStay() const { return m_stays; }

signals:
    /** A command is to be carried out. */
    void commandReached(const ConsoleCommand &command);

    /** A line for whoever reads the output; comes back by notePrinted(). */
    void message(const QString &line);

    /** The last step is done, or one failed. */
    void finished();

private:
    const ScriptStep &step() const { return m_script.steps.at(m_next); }

    void runOn();
    void begin();
    void runCommand();
    void reload();
    void pressKey(int times);
    void evaluate();
    void noteValue(const BoxAnswer &answer);
    void retryExpression(const BoxAnswer &answer);
    BoxControl::Done forThisStep(const std::function<void(const BoxAnswer &)> &use);
    void endBy(const BoxAnswer &answer);
    void pass() { end(QString()); }
    void end(const QString &failure);
    void giveUpWaiting();
    QString limitFailure() const;
    void finish();

    ParsedScript m_script;
    BoxControl &m_control;
    ScriptResult m_result;
    int m_next = 0;
    bool m_isRunning = false;  ///< Between start() and finished().
    bool m_isStepOpen = false; ///< The step m_next has begun.
    bool m_isRunningOn = false;
    bool m_stays = false;
    PrintedLines m_printed;
    QStringList m_lastLines; ///< For the report of a failure.
    QString m_lastValue;     ///< What the expression last gave that is to become true.
    QElapsedTimer m_valueAge;
    QElapsedTimer m_clock; ///< Since the step began.
    QTimer m_limit;
    QTimer m_pause;
};
