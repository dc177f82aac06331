// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop_sound.h"

#include "platform/box_paths.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <unistd.h>

QString desktopSoundFile() { return BoxPaths::root() + "/home/.sound"; }

bool writeDesktopSound(const DesktopSound &sound)
{
    const int file = ::open(QFile::encodeName(desktopSoundFile()).constData(),
                            O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0)
        return false;
    // Always of the same length, so that nothing of an older one stays behind.
    const QByteArray text = QByteArray::number(qBound(0, sound.volume, 100)).rightJustified(3) +
                            (sound.isMuted ? " muted\n" : "      \n");
    const bool isWritten = ::write(file, text.constData(), std::size_t(text.size())) == text.size();
    ::close(file);
    return isWritten;
}

std::optional<DesktopSound> readDesktopSound()
{
    QFile file(desktopSoundFile());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QList<QByteArray> words = file.read(64).simplified().split(' ');
    bool isNumber = false;
    const int volume = words.first().toInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return DesktopSound{qBound(0, volume, 100), words.value(1) == "muted"};
}
