// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/**
 * Name of the settings file that belongs to a portal: "private_settings_" and the URL's host and
 * port with "." and ":" replaced by "_". Nothing for a URL without "://".
 */
std::optional<QString> privateSettingsName(const QString &portalUrl);
