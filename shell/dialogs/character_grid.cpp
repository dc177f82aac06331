// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/character_grid.h"

#include <QStringList>

#include <cstdlib>

QStringList characterRows(bool shifted)
{
    if (shifted)
        return {"!\"'$%()*;<>~", "ABCDEFGHIJKL", "MNOPQRSTUVWX", "YZ[]{}\\|^`\u20ac\u00a3"};
    return {"1234567890-_", "abcdefghijkl", "mnopqrstuvwx", "yz.,:/@?&=+#"};
}

int nearestCell(const QVector<int> &centres, int centre)
{
    int nearest = 0;
    for (int i = 1; i < centres.size(); ++i) {
        if (std::abs(centres[i] - centre) < std::abs(centres[nearest] - centre))
            nearest = i;
    }
    return nearest;
}
