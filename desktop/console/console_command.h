// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>

/** What one line of the console asks for. */
struct ConsoleCommand
{
    enum class Action {
        Nothing,    ///< An empty line.
        Help,       ///< Print the list of commands.
        Quit,       ///< End the receiver.
        Explain,    ///< Print text: the line is no command.
        SendEvent,  ///< Send event with payload.
        Reload,     ///< Load the portal again.
        MountUsb,   ///< Mount the disk named by text.
        UnmountUsb, ///< Unmount the disk named by text.
    };

    Action action = Action::Nothing;
    Event event = Event::PlayStart;
    QByteArray payload;
    QString text;
};

/** Reads one line. A line that is no command gives Explain with a text that says why. */
ConsoleCommand parseConsoleLine(const QString &line);

/** The list of commands, one a line. */
QString consoleHelp();
