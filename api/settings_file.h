// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** Path of a file in the application's home: APP_HOME and the name, with nothing between. */
QString homeFile(const QString &name);

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

    /** The stored text, or the default if file, member or text is missing. */
    QString read(const QString &name, const QString &defaultValue) const;

    /**
     * Stores one text. Content that is no JSON is lost; JSON that is no object stays and takes
     * nothing in. A file that cannot be written stays as it is, silently.
     */
    void write(const QString &name, const QString &value) const;

private:
    QString m_path;
};
