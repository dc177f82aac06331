// SPDX-License-Identifier: Apache-2.0
#include "api/settings_file.h"

#include "api/text_file.h"
#include "platform/environment.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace {

/**
 * Only the first word counts, never the whole file: portals rely on a stored blank making the next
 * reader see broken JSON and start over with defaults.
 */
std::optional<QJsonDocument> storedDocument(const QString &path)
{
    const std::optional<QString> word = firstWordOfFile(path);
    if (!word)
        return std::nullopt;
    return QJsonDocument::fromJson(word->toUtf8());
}

void replaceDocument(const QString &path, const QJsonDocument &document)
{
    replaceFile(path, QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
}

} // namespace

QString homeFile(const QString &name)
{
    return QFile::decodeName(qgetenv(Environment::applicationHome)) + name;
}

SettingsFile::SettingsFile(const QString &path)
    : m_path(path)
{
}

SettingsFile SettingsFile::ofCurrentPortal()
{
    return SettingsFile(homeFile(Environment::textOf(Environment::privateSettingPath)));
}

QString SettingsFile::read(const QString &name, const QString &defaultValue) const
{
    return storedDocument(m_path)
        .value_or(QJsonDocument())
        .object()
        .value(name)
        .toString(defaultValue);
}

void SettingsFile::write(const QString &name, const QString &value) const
{
    const QJsonDocument stored = storedDocument(m_path).value_or(QJsonDocument());
    if (stored.isArray()) {
        // Portals find a list of theirs again as they left it.
        replaceDocument(m_path, stored);
        return;
    }
    QJsonObject settings = stored.object();
    settings.insert(name, value);
    replaceDocument(m_path, QJsonDocument(settings));
}
