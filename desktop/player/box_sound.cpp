// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/box_sound.h"

#include "platform/desktop_sound.h"

#include <QFile>

void BoxSound::start()
{
    // Only a file that is there can be watched.
    QFile(desktopSoundFile()).open(QIODevice::Append);
    m_watcher.addPath(desktopSoundFile());
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &BoxSound::read);
    read();
}

void BoxSound::read()
{
    if (const auto sound = readDesktopSound())
        emit changed(sound->volume, sound->isMuted);
}
