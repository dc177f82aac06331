// SPDX-License-Identifier: Apache-2.0
#include "api/settings_text.h"

#include "api/text_file.h"

#include <QJsonDocument>

#include <algorithm>

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

QJsonDocument withSetting(const QJsonDocument &document, const Setting &setting)
{
    // Portals find a list of theirs again as they left it.
    if (document.isArray())
        return document;
    QJsonObject settings = document.object();
    settings.insert(setting.first, setting.second);
    return QJsonDocument(settings);
}

} // namespace

QJsonObject settingsIn(const QString &stored)
{
    return QJsonDocument::fromJson(stored.toUtf8()).object();
}

QByteArray settingsText(const QString &stored, const QVector<Setting> &settings)
{
    QJsonDocument document = QJsonDocument::fromJson(stored.toUtf8());
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
    return storedForm(document);
}
