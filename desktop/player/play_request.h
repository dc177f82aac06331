// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What a play command asks for. */
struct PlayRequest
{
    QString url;
    int positionMs = 0; ///< Where playback starts, 0 or more.
};

/**
 * Splits the text of a play command: an ending " position:N" (N whole seconds) is the start and no
 * part of the URL. A negative N starts at 0; an ending without a number belongs to the URL. A word
 * before the URL, such as "auto ", names a way of playing that only some boxes know, and is
 * dropped.
 */
PlayRequest parsePlayText(const QString &text);

/**
 * Length that a simulated medium has, in ms: "duration=N" (seconds) among the parameters of the
 * URL, otherwise the given one. 0 is a live channel, which has no length.
 */
int simulatedDurationMs(const QString &url, int defaultMs);
