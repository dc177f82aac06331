// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The statement that enters a key of the on-screen keyboard into the portal's focused field.
 * Backslashes are doubled; single quotes stay as they are, so that a quote key fails in the page
 * and does nothing else.
 */
QString keyboardStatement(QString key, const QString &id);
