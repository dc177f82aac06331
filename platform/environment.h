// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QtGlobal>

/**
 * The environment variables that the box's start script sets for the program and that the program
 * sets for itself and its children; docs/box.md tells what each means. Those that only the
 * desktop's own programs know stand where they are read.
 */
namespace Environment {

// Set by the start script.
inline constexpr char startPortal[] = "Q_VESPREL_PORTAL";
inline constexpr char logSwitch[] = "Q_VESPREL_LOG";
inline constexpr char mainAppMode[] = "Q_MAIN_APP_MODE";
inline constexpr char userAgent[] = "Q_USER_AGENT";
inline constexpr char cachePath[] = "Q_CACHE_PATH";
inline constexpr char cacheMaxSize[] = "Q_CACHE_MAX_SIZE";
inline constexpr char portalOrigins[] = "Q_PORTAL_ORIGINS";
inline constexpr char webDebug[] = "Q_WEB_DEBUG";
inline constexpr char trust[] = "VESPREL_TRUST";
inline constexpr char watchdogFile[] = "Q_WATCHDOG_FILE";
inline constexpr char version[] = "Q_VERSION";
inline constexpr char deviceVendor[] = "Q_DEVICE_VENDOR";
inline constexpr char model[] = "Q_MODEL";
inline constexpr char hardwareVersion[] = "Q_HARDWARE_VERSION";
inline constexpr char imageDescription[] = "Q_IMAGE_DESCRIPTION";
inline constexpr char imageVersion[] = "Q_IMAGE_VERSION";
inline constexpr char imageDate[] = "Q_IMAGE_DATE";
inline constexpr char softwareVersion[] = "Q_SW_VERSION";

// The same, for a program on a desk only.
inline constexpr char window[] = "VESPREL_WINDOW";
inline constexpr char desktopMacAddress[] = "VESPREL_MAC";
inline constexpr char desktopSerialNumber[] = "VESPREL_SERIAL";

// Set by the program.
inline constexpr char applicationHome[] = "APP_HOME";
inline constexpr char privateSettingPath[] = "Q_PRIVATE_SETTING_PATH";
inline constexpr char currentPortal[] = "portal1";

/**
 * What a variable says of the box, ASCII up to its first NUL; empty if it is unset. Read afresh in
 * every call. Any thread, provided that nobody sets a variable meanwhile.
 */
inline QString textOf(const char *name) { return QString::fromLatin1(qgetenv(name).constData()); }

} // namespace Environment
