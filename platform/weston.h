// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

/**
 * Whether the desktop is Weston's, which puts black below every full-screen window and with it over
 * the video, and tells nobody where windows are.
 */
inline bool isWeston()
{
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
           qEnvironmentVariableIsSet("WESTON_CONFIG_FILE");
}
