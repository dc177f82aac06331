// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * The JavaScript statements that the box evaluates in the portal. Portals define stbEvent, stb,
 * module, key and _debug themselves.
 */

namespace PageStatement {

// Events of the receiver.
inline constexpr char playStarted[] = "stbEvent.onEvent(\"4\");";
inline constexpr char playEnded[] = "stbEvent.onEvent(\"1\");";
inline constexpr char audioTracksChanged[] = "stbEvent.onEvent(\"7\");";
inline constexpr char subtitleTracksChanged[] = "stbEvent.onEvent(\"9\");";
inline constexpr char usbMounted[] = "stbEvent.onBroadcastMessage(0, \"storage.mount\");";
inline constexpr char usbUnmounted[] = "stbEvent.onBroadcastMessage(0, \"storage.unmount\");";

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

/** Evaluated before a channel key: the portal tells gSTB its place, menu and time shift. */
extern const char tellState[];

/** Asks where the focused field is; the answer has the members x, y, w and h (px of the page). */
extern const char focusedBox[];

/**
 * Enters a key of the on-screen keyboard into the focused field. Backslashes are doubled; single
 * quotes stay as they are, so that a quote key fails in the page and does nothing else.
 */
QString keyboardPress(QString key, const QString &id);

} // namespace PageStatement
