// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/play_request.h"

#include <QRegularExpression>

#include <limits>

namespace {

constexpr int msPerSecond = 1000;
constexpr int mostSeconds = std::numeric_limits<int>::max() / msPerSecond;

/** Whole seconds as digits to ms, 0 to what an integer holds. */
int millisecondsOf(const QString &seconds)
{
    bool fits = false;
    const int value = seconds.toInt(&fits);
    const int bounded = fits ? qBound(0, value, mostSeconds) : mostSeconds;
    return bounded * msPerSecond;
}

} // namespace

PlayRequest parsePlayText(const QString &text)
{
    static const QRegularExpression ending(" position:(-?)([0-9]+)$");
    static const QRegularExpression solution("^[a-z0-9]+ +(?=/|[a-z0-9+.-]+:)",
                                             QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = ending.match(text);
    PlayRequest request = {text, 0};
    if (match.hasMatch()) {
        const bool negative = !match.captured(1).isEmpty();
        request.url = text.left(match.capturedStart());
        request.positionMs = negative ? 0 : millisecondsOf(match.captured(2));
    }
    request.url.remove(solution);
    return request;
}

int simulatedDurationMs(const QString &url, int defaultMs)
{
    static const QRegularExpression parameter("[?&]duration=([0-9]+)");
    const QRegularExpressionMatch match = parameter.match(url);
    return match.hasMatch() ? millisecondsOf(match.captured(1)) : defaultMs;
}
