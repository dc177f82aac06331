// SPDX-License-Identifier: Apache-2.0
#include "platform/screen_size.h"

#include <QRegularExpression>

QSize screenSize(const QString &text)
{
    static const QRegularExpression form("^(\\d{2,5})x(\\d{2,5})$");
    const QRegularExpressionMatch match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const bool fits =
        size.width() >= 64 && size.height() >= 64 && size.width() <= 8192 && size.height() <= 8192;
    return match.hasMatch() && fits ? size : QSize();
}
