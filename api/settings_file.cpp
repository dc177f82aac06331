#include "api/settings_file.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

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

void replaceContent(const QString &path, const QJsonDocument &document)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Text))
        file.write(document.toJson(QJsonDocument::Compact));
}

} // namespace

std::optional<QString> firstWordOfFile(const QString &path)
{
    // Names come from the portal unchecked; a device or a pipe could give words without end.
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QString word;
    stream >> word;
    return word;
}

QString homeFile(const QString &name) { return QFile::decodeName(qgetenv("APP_HOME")) + name; }

SettingsFile::SettingsFile(const QString &path)
    : m_path(path)
{
}

SettingsFile SettingsFile::ofCurrentPortal()
{
    return SettingsFile(homeFile(QString::fromLatin1(qgetenv("Q_PRIVATE_SETTING_PATH"))));
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
        replaceContent(m_path, stored);
        return;
    }
    QJsonObject settings = stored.object();
    settings.insert(name, value);
    replaceContent(m_path, QJsonDocument(settings));
}
