// SPDX-License-Identifier: Apache-2.0
#include "api/settings_file.h"

#include "api/text_file.h"
#include "platform/environment.h"
#include "platform/log_record.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRegularExpression>

QString homeFile(const QString &name)
{
    return QFile::decodeName(qgetenv(Environment::applicationHome)) + name;
}

void removeUnfinishedSettings()
{
    // As QSaveFile names what it writes, beside the file that this is to replace. Settings have no
    // dot in their names; user data may, and a word such as "backup", "Backup" or "BACKUP" is none
    // of these: rather a few unfinished files stay.
    static const QRegularExpression unfinished(
        "^(private_settings_[^.]*)\\.(?=[A-Za-z]+[A-Z])(?=[A-Z]*[a-z])[A-Za-z]{6}$");
    QDir home(homeFile(QString()));
    const QStringList names =
        home.entryList({"private_settings_*.??????"}, QDir::Files | QDir::NoSymLinks);
    for (const QString &name : names) {
        const QRegularExpressionMatch match = unfinished.match(name);
        if (match.hasMatch() && home.exists(match.captured(1)))
            home.remove(name);
    }
}

SettingsFile::SettingsFile(const QString &path)
    : m_path(path)
{
}

SettingsFile SettingsFile::ofCurrentPortal()
{
    return SettingsFile(homeFile(Environment::textOf(Environment::privateSettingPath)));
}

QJsonObject SettingsFile::readAll() const
{
    // Only the first word counts, never the whole file: portals rely on a stored blank making the
    // next reader see broken JSON and start over with defaults.
    return settingsIn(firstWordOfFile(m_path).value_or(QString()));
}

QString SettingsFile::read(const QString &name, const QString &defaultValue) const
{
    return readAll().value(name).toString(defaultValue);
}

void SettingsFile::write(const QVector<Setting> &settings) const
{
    if (settings.isEmpty())
        return;
    const QByteArray content = settingsText(firstWordOfFile(m_path).value_or(QString()), settings);
    if (content.size() > longestText)
        logRecord("Not stored, more than 16 MiB:", m_path);
    else
        replaceFile(m_path, QString::fromUtf8(content));
}
