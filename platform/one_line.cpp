// SPDX-License-Identifier: Apache-2.0
#include "platform/one_line.h"

QString oneLine(const QString &text, int longest)
{
    const QString shown = text.left(longest);
    QString line;
    for (const QChar character : shown) {
        // Whatever a peer sends must not move the cursor of the terminal that shows it.
        if (character.category() == QChar::Other_Control)
            line += QString("\\x%1").arg(character.unicode(), 2, 16, QChar('0'));
        else
            line += character;
    }
    return text.size() > longest ? line + "..." : line;
}
