// SPDX-License-Identifier: Apache-2.0
#include "tests/support/clip.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

bool makeClip(const QString &path, int seconds)
{
    QStringList arguments = {"-hide_banner", "-loglevel", "error", "-y"};
    arguments += {"-f", "lavfi", "-i", "testsrc=size=160x120:rate=25"};
    arguments += {"-f", "lavfi", "-i", "sine=frequency=440"};
    arguments += {"-f", "lavfi", "-i", "sine=frequency=660"};
    const bool withSubtitles = path.endsWith(".mkv");
    if (withSubtitles) {
        QFile texts(path + ".srt");
        if (!texts.open(QIODevice::WriteOnly))
            return false;
        texts.write("1\n00:00:00,000 --> 00:00:01,000\nhello\n");
        texts.close();
        arguments += {"-i", texts.fileName(), "-map", "3:s", "-metadata:s:s:0", "language=eng"};
    }
    arguments += {"-map", "0:v", "-map", "1:a", "-map", "2:a"};
    arguments += {"-metadata:s:a:0", "language=eng", "-metadata:s:a:1", "language=ger"};
    arguments += {"-t", QString::number(seconds), "-g", "12", "-c:v", "mpeg2video"};
    arguments += {"-c:a", "mp2", path};
    return QProcess::execute("ffmpeg", arguments) == 0;
}

bool isInstalled(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}
