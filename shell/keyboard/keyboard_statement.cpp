// SPDX-License-Identifier: Apache-2.0
#include "shell/keyboard/keyboard_statement.h"

QString keyboardStatement(QString key, const QString &id)
{
    key.replace("\\", "\\\\");
    // One after the other: a key such as "%2" takes the id's place, as it always did.
    return QString("KeyboardPress('%1', '%2')").arg(key).arg(id);
}
