// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/recording_time.h"

#include <QDateTime>

namespace {

// The end of the year 9999; what lies beyond is no time that anybody means.
constexpr qint64 latestSeconds = 253402300799;

} // namespace

std::optional<qint64> recordingTime(const QString &text)
{
    const QString trimmed = text.trimmed();
    bool isNumber = false;
    const qint64 seconds = trimmed.toLongLong(&isNumber);
    if (isNumber)
        return seconds >= 0 && seconds <= latestSeconds ? std::optional<qint64>(seconds)
                                                        : std::nullopt;
    for (const char *format : {"yyyy-MM-dd hh:mm:ss", "yyyy-MM-dd hh:mm"}) {
        const QDateTime local = QDateTime::fromString(trimmed, format);
        if (local.isValid())
            return local.toSecsSinceEpoch();
    }
    const QDateTime iso = QDateTime::fromString(trimmed, Qt::ISODate);
    return iso.isValid() ? std::optional<qint64>(iso.toSecsSinceEpoch()) : std::nullopt;
}
