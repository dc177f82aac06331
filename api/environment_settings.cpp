// SPDX-License-Identifier: Apache-2.0
#include "api/environment_settings.h"

#include "api/setting_defaults.h"
#include "api/settings_file.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject parsedObject(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

} // namespace

QString environmentAnswer(const QString &args, const SettingsFile &settings)
{
    const QJsonObject stored = settings.readAll();
    QJsonObject result;
    const QJsonArray names = parsedObject(args).value("varList").toArray();
    for (const QJsonValue &element : names) {
        if (!element.isString())
            continue;
        const QString name = element.toString();
        result.insert(name, stored.value(name).toString(settingDefault(name)));
    }
    // The writer sorts the members, which gives the order that portals expect.
    const QJsonObject answer = {{"errCode", 0}, {"errMsg", ""}, {"result", result}};
    return QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

void storeEnvironment(const QString &args, const SettingsFile &settings)
{
    const QJsonObject members = parsedObject(args);
    QVector<Setting> texts;
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member.value().isString())
            texts.append({member.key(), member.value().toString()});
    }
    settings.write(texts);
}
