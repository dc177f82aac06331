// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/document.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

QString sectionText(const QString &heading)
{
    QFile file(":/receiver-protocol.md");
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    static const QRegularExpression end("^(#|\\||- )");
    QStringList text;
    bool isInside = false;
    for (const QString &line : lines) {
        if (isInside && end.match(line).hasMatch())
            break;
        if (isInside)
            text += line;
        isInside = isInside || line == "## " + heading || line == "### " + heading;
    }
    return text.join('\n').trimmed();
}

QString sectionAddress(const QString &heading)
{
    // As those who show the document make their anchors.
    QString anchor = heading.toLower();
    static const QRegularExpression noAnchor("[^a-z0-9 -]");
    anchor.remove(noAnchor);
    return "docs/receiver-protocol.md#" + anchor.replace(' ', '-');
}
