// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * The JavaScript statements that bring an event into the portal. Portals define stbEvent, stb, key
 * and _debug themselves.
 */

namespace EventStatement {

extern const char playStarted[];
extern const char playEnded[];
extern const char audioTracksChanged[];
extern const char subtitleTracksChanged[];
extern const char usbMounted[];
extern const char usbUnmounted[];

/** Switches the portal's seeking by arrow keys on, at the first playback. */
extern const char firstPlay[];

/** Separates the portal's exit key from its back key. */
extern const char portalLoaded[];

/** Portal codes of the recording events. */
enum class Recording { Finished = 34, Error = 35, Started = 39 };

/** Raises a recording event whose parameters the portal reads from pvrManager. */
QString recording(Recording code);

/** The parameters of a recording event: {"id":N}. */
QString recordingParameters(int id);

} // namespace EventStatement
