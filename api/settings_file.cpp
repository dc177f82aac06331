// SPDX-License-Identifier: Apache-2.0
#include "api/settings_file.h"

#include "api/text_file.h"
#include "platform/environment.h"
#include "platform/log_record.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace {

QByteArray storedForm(const QJsonDocument &document)
{
    return document.toJson(QJsonDocument::Compact);
}

/** What a document becomes when the next reader takes the first word of its stored form. */
QJsonDocument readAgain(const QJsonDocument &document)
{
    return QJsonDocument::fromJson(firstWord(storedForm(document)).toUtf8());
}

bool hasWhiteSpace(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

/**
 * Whether a text holds what may be read in another way or order by what else stands in the
 * document: halves of surrogate pairs, and byte order marks.
 */
bool isOdd(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.isSurrogate() || c == QChar::ByteOrderMark; });
}

QJsonDocument withSetting(const QJsonDocument &document, const SettingsFile::Setting &setting)
{
    // Portals find a list of theirs again as they left it.
    if (document.isArray())
        return document;
    QJsonObject settings = document.object();
    settings.insert(setting.first, setting.second);
    return QJsonDocument(settings);
}

} // namespace

QString homeFile(const QString &name)
{
    return QFile::decodeName(qgetenv(Environment::applicationHome)) + name;
}

void removeUnfinishedSettings()
{
    // As QSaveFile names what it writes, beside the file that this is to replace. Settings have no
    // dot in their names; user data may, and a word such as "backup" is none of these.
    static const QRegularExpression unfinished(
        "^(private_settings_[^.]*)\\.(?=[a-z]*[A-Z])[A-Za-z]{6}$");
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
    return QJsonDocument::fromJson(firstWordOfFile(m_path).value_or(QString()).toUtf8()).object();
}

QString SettingsFile::read(const QString &name, const QString &defaultValue) const
{
    return readAll().value(name).toString(defaultValue);
}

void SettingsFile::write(const QVector<Setting> &settings) const
{
    if (settings.isEmpty())
        return;
    QJsonDocument document =
        QJsonDocument::fromJson(firstWordOfFile(m_path).value_or(QString()).toUtf8());
    // Whatever somebody else put into the file may change each of the first two times that it is
    // read and written; from then on only odd letters can, and white space that is added.
    const QByteArray before = storedForm(document);
    bool isAnyOdd = isOdd(QString::fromUtf8(before)) || before.contains("\\ud");
    int timesReadAgain = 0;
    bool isSettled = false;
    for (int i = 0; i < settings.size(); ++i) {
        if (i > 0 && !isSettled) {
            document = readAgain(document);
            ++timesReadAgain;
        }
        document = withSetting(document, settings[i]);
        const QString both = settings[i].first + settings[i].second;
        isAnyOdd = isAnyOdd || isOdd(both);
        isSettled = timesReadAgain >= 2 && !isAnyOdd && !hasWhiteSpace(both);
    }
    const QByteArray content = storedForm(document);
    if (content.size() > longestText)
        logRecord("Not stored, more than 16 MiB:", m_path);
    else
        replaceFile(m_path, QString::fromUtf8(content));
}
