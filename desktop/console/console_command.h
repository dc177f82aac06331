// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>

#include <optional>

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
        Silence,    ///< Act for ms as a receiver that hangs.
        Slow,       ///< Act as a receiver that does everything ms late.
        Leave,      ///< Act as a receiver that died.
    };

    Action action = Action::Nothing;
    Event event = Event::PlayStart;
    QByteArray payload;
    QString text;
    int ms = 0;
};

/** Reads one line. A line that is no command gives Explain with a text that says why. */
ConsoleCommand parseConsoleLine(const QString &line);

/**
 * What follows these words in a line that begins with them, however many blanks are between; none
 * if it begins otherwise.
 */
std::optional<QString> argumentsAfter(const QString &words, const QString &line);

/** A time of 0 to 86400 seconds, which may have a fraction, in ms; none if the text is none. */
std::optional<int> readSeconds(const QString &text);

/** The list of commands, one a line. */
QString consoleHelp();
