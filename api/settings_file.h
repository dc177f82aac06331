// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "api/settings_text.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/** Path of a file in the application's home: APP_HOME and the name, with nothing between. */
QString homeFile(const QString &name);

/**
 * Removes from the application's home what a power cut left of a settings file that was being
 * replaced, so that such files do not gather over the years. At the start, before anything is
 * stored.
 */
void removeUnfinishedSettings();

/**
 * The small settings that a portal keeps on the box: one compact JSON object of texts in a file of
 * its own. The file is opened afresh in each call and nothing is kept, since the portal and with
 * it the file may change at any time. GUI thread.
 */
class SettingsFile
{
public:
    explicit SettingsFile(const QString &path);

    /**
     * The file of the portal that the receiver announced last. Before any announcement its path is
     * the home directory, so that reads give defaults and writes do nothing.
     */
    static SettingsFile ofCurrentPortal();

    /** All that is stored; empty if the file is missing or holds no JSON object. */
    QJsonObject readAll() const;

    /** The stored text, or the default if file, member or text is missing. */
    QString read(const QString &name, const QString &defaultValue) const;

    /**
     * Stores texts in their order, with the content that storing one after the other would leave,
     * but writing the file only once. Content that is no JSON is lost; JSON that is no object stays
     * and takes nothing in. A file that cannot be written stays as it is, silently; so does one
     * that would become too long to be read again, with a record.
     */
    void write(const QVector<Setting> &settings) const;

private:
    QString m_path;
};
