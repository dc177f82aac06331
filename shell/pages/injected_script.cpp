// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/injected_script.h"

#include <QFile>

// At file scope and outside any namespace, as the resource system wants it in a static library.
static void initScripts() { Q_INIT_RESOURCE(scripts); }

std::optional<QString> injectedScript(const QString &name)
{
    initScripts();
    QFile file(":/javascript/" + name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    return QString(file.readAll().constData());
}
