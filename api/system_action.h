// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What a portal's named action asks for. */
struct SystemAction
{
    enum class Kind {
        ScreenMode, ///< The receiver shall switch the resolution.
        Ignored,    ///< Accepted, and nothing happens.
        Reboot,
        Script, ///< The box's action script carries it out.
    };

    Kind kind = Kind::Script;
    QString screenModeText; ///< For ScreenMode: the resolution as the portal wrote it.
    int screenMode = 0;     ///< For ScreenMode: its number; 0 if it is none.
};

/** Understands an action by its beginning; upper and lower case differ. Any thread. */
SystemAction parseSystemAction(const QString &action);

/** A path as one word of a shell, in quotes if any of its letters needs them. Any thread. */
QString shellWord(const QString &path);

/** How long an action script may run; a portal stands still meanwhile. */
constexpr int actionTimeoutMs = 30000;

/**
 * Runs the script with the shell and waits until it ends, at most timeoutMs milliseconds; the
 * caller is blocked so long. A script still running then is killed with all that it started.
 * Status and output are ignored; a missing script only fails. Any thread.
 */
void runActionScript(const QString &script, const QString &action, int timeoutMs = actionTimeoutMs);
