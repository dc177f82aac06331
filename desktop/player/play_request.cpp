// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/play_request.h"

#include <QRegularExpression>
#include <QStringList>

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

/** Takes the options from the end of a text; the first of the text comes first.
 */
QStringList takeOptions(QString &text)
{
    static const QRegularExpression option("\\s+([A-Za-z]+:[^\\s/]*)\\s*$");
    QStringList options;
    QRegularExpressionMatch match;
    while ((match = option.match(text)).hasMatch()) {
        options.prepend(match.captured(1));
        text.truncate(match.capturedStart());
    }
    return options;
}

void applyOption(const QString &option, PlayRequest &request)
{
    static const QRegularExpression form("^([A-Za-z]+):(-?)([0-9]+)$");
    const QRegularExpressionMatch match = form.match(option);
    if (!match.hasMatch())
        return;
    const QString name = match.captured(1);
    const QString digits = match.captured(2).isEmpty() ? match.captured(3) : QString("0");
    if (name == "position")
        request.positionMs = millisecondsOf(digits);
    else if (name == "atrack")
        request.audioPid = digits.toInt();
    else if (name == "strack")
        request.subtitlePid = digits.toInt();
    else if (name == "vtrack")
        request.videoPid = digits.toInt();
}

} // namespace

PlayRequest parsePlayText(const QString &text)
{
    static const QRegularExpression solution("^[a-z0-9]+ +(?=/|[a-z0-9+.-]+:)",
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression address("^(?!file:)[a-z][a-z0-9+.-]*://",
                                            QRegularExpression::CaseInsensitiveOption);
    PlayRequest request;
    request.url = text;
    request.url.remove(solution);
    const QStringList options = takeOptions(request.url);
    if (address.match(request.url).hasMatch())
        request.url = request.url.section(' ', 0, 0);
    for (const QString &option : options)
        applyOption(option, request);
    return request;
}

int simulatedDurationMs(const QString &url, int defaultMs)
{
    static const QRegularExpression parameter("[?&]duration=([0-9]+)");
    const QRegularExpressionMatch match = parameter.match(url);
    return match.hasMatch() ? millisecondsOf(match.captured(1)) : defaultMs;
}
