// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/desktop/driver/driver_client.h"

#include <QImage>
#include <QList>
#include <QString>

/** One step of a walk with the remote. What is empty is not done or not expected. */
struct WalkStep
{
    const char *keys = ""; ///< Of the remote, or characters of a keyboard: "down*3, ok, y".
    const char *told =
        ""; ///< What the receiver then gets, its beginning; with "!": what it does not.
    const char *where =
        ""; ///< A selector, "screen" for the whole screen; with "!": not to be seen.
    const char *shows =
        ""; ///< A part of the text there; for "screen" bars, moving, still or black.
};

/** A viewer of a page: presses keys and waits until receiver and screen are as expected. */
class DemoWalker
{
public:
    explicit DemoWalker(DriverClient &client)
        : m_client(client)
    {
    }

    /** Loads a page as a viewer's first, with nothing playing. */
    void open(const QString &url);

    /** Carries out one step; empty, or what is not as expected. */
    QString walk(const WalkStep &step);

    /** Types a line into the receiver's console. */
    void tellReceiver(const QString &line);

    /** From now on it looks at the window of this kind: "portal", or the "favourites" above it. */
    void switchTo(const QString &kind);

    /** Waits for a record of the log; false if it does not come. */
    bool waitForLog(const QString &record);

    /** Errors of the page's scripts since the last question, one text. */
    QString errors();

    /** The whole screen. */
    QImage screen();

private:
    void press(const QString &key, int times);
    bool isTold(const QString &text);
    QString textAt(const QString &selector);
    QString judgeScreen(const QString &kind);

    DriverClient &m_client;
    QStringList m_commands; ///< Since the keys of the step.
};
