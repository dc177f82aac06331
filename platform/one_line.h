// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * A text fit for one line of output: control characters are written as \xNN, and what goes beyond
 * so many characters is cut off and marked with "...". Any thread.
 */
QString oneLine(const QString &text, int longest = 500);
