// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/**
 * Text of a script compiled in under ":/javascript/", up to its first NUL; nothing if the script
 * cannot be opened.
 */
std::optional<QString> injectedScript(const QString &name);
