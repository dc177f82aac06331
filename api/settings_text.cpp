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

/** Whether a text may be read as another: halves of surrogate pairs, byte order marks. */
bool mayBeReadAnotherWay(const QString &text)
{
    return !text.isValidUtf16() || text.contains(QChar::ByteOrderMark);
}

/**
 * Whether names can be found in two orders: by code units while they are new, by code points once
 * they were read. The two differ between surrogate pairs and what comes behind surrogates.
 */
class NameOrder
{
public:
    void add(const QString &name)
    {
        for (const QChar c : name) {
            m_anyPair = m_anyPair || c.isSurrogate();
            m_anyBehind = m_anyBehind || c.unicode() > 0xdfff;
        }
    }

    bool isAmbiguous() const { return m_anyPair && m_anyBehind; }

private:
    bool m_anyPair = false;
    bool m_anyBehind = false;
};

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
    // To write and read it again for each setting would take the square of their number. Whatever
    // somebody else put into the file may change each of the first two times; from then on only
    // odd letters can, and white space that is added.
    const QByteArray before = storedForm(document);
    bool isAnyOdd = mayBeReadAnotherWay(QString::fromUtf8(before)) || before.contains("\\ud");
    NameOrder names;
    const QStringList storedNames = document.object().keys();
    for (const QString &name : storedNames)
        names.add(name);
    int timesReadAgain = 0;
    bool isSettled = false;
    for (int i = 0; i < settings.size(); ++i) {
        const QString both = settings[i].first + ':' + settings[i].second;
        isAnyOdd = isAnyOdd || mayBeReadAnotherWay(both);
        names.add(settings[i].first);
        if (i > 0 && (!isSettled || isAnyOdd || names.isAmbiguous())) {
            document = readAgain(document);
            ++timesReadAgain;
        }
        document = withSetting(document, settings[i]);
        isSettled = timesReadAgain >= 2 && !hasWhiteSpace(both);
    }
    return storedForm(document);
}
