// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFileSystemWatcher>
#include <QObject>

/** Follows the volume and mute that the program sets, as the box's sound output would. */
class BoxSound : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Follows from now on and tells at once what is set, if anything is. */
    void start();

signals:
    /** The volume in percent, and whether nothing is to be heard. */
    void changed(int volume, bool isMuted);

private:
    void read();

    QFileSystemWatcher m_watcher;
};
