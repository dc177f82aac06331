// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "api/text_file.h"

#include <QString>

#include <optional>

/**
 * First word of a portal's own file in the application's home; empty if there is none. The name is
 * not checked. "keyboard.json" always gives the fixed list of keyboard layouts. GUI thread.
 */
QString loadUserData(const QString &fileName);

/** Makes data the whole content of that file; one that cannot be replaced stays as it is. */
void saveUserData(const QString &fileName, const QString &data);

/** Whole text of the box's parameter file; nothing if it cannot be opened. GUI thread. */
std::optional<QString> readBoxParameters();

/** Makes text the whole content of the parameter file, or leaves that as it is. */
Replacement writeBoxParameters(const QString &text);
