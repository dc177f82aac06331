// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What a play command asks for. */
struct PlayRequest
{
    QString url;
    int positionMs = 0;  ///< Where playback starts, 0 or more.
    int audioPid = 0;    ///< The tracks to start with; 0 leaves the choice to the player.
    int subtitlePid = 0; ///< The same.
    int videoPid = 0;    ///< The same.
};

/**
 * Splits the text of a play command: the name of a solution, such as "auto",
 * which only some boxes know and which is dropped; the address; and options of
 * the form "name:value". Those are "position" (whole seconds, a negative number
 * is the start), "atrack", "strack" and "vtrack" (pids), in any order; others,
 * and values that are no numbers, are ignored. An address with a scheme ends at
 * its first blank; a path may hold blanks and ends before the options.
 */
PlayRequest parsePlayText(const QString &text);

/**
 * Length that a simulated medium has, in ms: "duration=N" (seconds) among the parameters of the
 * URL, otherwise the given one. 0 is a live channel, which has no length.
 */
int simulatedDurationMs(const QString &url, int defaultMs);
