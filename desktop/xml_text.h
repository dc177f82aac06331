// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** The text with U+FFFD for each character that XML cannot hold. Any thread. */
QString xmlText(const QString &text);
