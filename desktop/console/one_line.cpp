// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/one_line.h"

namespace {

constexpr int longestLine = 500;

} // namespace

QString oneLine(const QString &text)
{
    const QString shown = text.left(longestLine);
    QString line;
    for (const QChar character : shown) {
        // Whatever a peer sends must not move the cursor of the terminal that shows it.
        if (character.category() == QChar::Other_Control)
            line += QString("\\x%1").arg(character.unicode(), 2, 16, QChar('0'));
        else
            line += character;
    }
    return text.size() > longestLine ? line + "..." : line;
}
