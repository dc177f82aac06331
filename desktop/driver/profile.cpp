// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/profile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

Profile parseProfile(const QByteArray &text, QString &failure)
{
    static const QRegularExpression form("^([A-Za-z_][A-Za-z0-9_]*)=(.*)$");
    Profile profile;
    const QStringList lines = QString::fromUtf8(text).split('\n');
    for (int index = 0; index < lines.size(); ++index) {
        const QString &line = lines[index];
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const QRegularExpressionMatch match = form.match(line);
        if (!match.hasMatch()) {
            failure = QString("line %1 is no NAME=VALUE").arg(index + 1);
            return {};
        }
        profile[match.captured(1)] = match.captured(2);
    }
    return profile;
}

Profile readProfile(const QString &folder, const QString &name, QString &failure)
{
    // A name is never a path.
    static const QRegularExpression form("^[A-Za-z0-9][A-Za-z0-9_-]*$");
    QFile file(folder + '/' + name + ".env");
    if (!form.match(name).hasMatch() || !file.open(QIODevice::ReadOnly)) {
        QStringList names = QDir(folder).entryList({"*.env"}, QDir::Files, QDir::Name);
        for (QString &known : names)
            known.chop(int(qstrlen(".env")));
        failure = QString("There is no profile \"%1\" in %2, only %3.")
                      .arg(name, folder, names.join(", "));
        return {};
    }
    const Profile profile = parseProfile(file.readAll(), failure);
    if (!failure.isEmpty())
        failure.prepend(file.fileName() + ": ");
    return profile;
}
