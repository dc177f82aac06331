// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/**
 * All codes of a language, the one of three letters that media carry first: "en" and "eng" both
 * give "eng", "en". A code that is not in the table gives itself, an empty one "und".
 */
QStringList languageCodes(const QString &code);
