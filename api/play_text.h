// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** The nearest integer that exists; a fraction is cut off. Any thread. */
int clampedInt(double value);

/**
 * What is played for a portal's play configuration, a JSON object with "uri" and "position"
 * (seconds): the address and the position behind a blank, which the receiver splits again. A text
 * that is no such object plays an empty address. Any thread.
 */
QString configuredPlayText(const QString &configuration);
