// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/**
 * A time of a recording task as seconds since 1970. Accepted are such seconds as text, ISO 8601
 * ("2030-01-31T20:15:00Z", without a zone local time) and "YYYY-MM-DD hh:mm:ss" (local time, the
 * seconds may be missing). Anything else gives none.
 */
std::optional<qint64> recordingTime(const QString &text);
