// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/box_media.h"

#include "platform/box_paths.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>

namespace {

const char mediaFolder[] = "/media/";

QString withoutParameters(const QString &path) { return path.section('?', 0, 0); }

QString boxMedia(const QString &path) { return BoxPaths::root() + path; }

} // namespace

QString mediaSource(const QString &address)
{
    const QString path =
        address.startsWith("file:", Qt::CaseInsensitive) ? QUrl(address).toLocalFile() : address;
    if (!path.startsWith('/'))
        return address;
    const QString bare = withoutParameters(path);
    for (const QString &candidate : {path, boxMedia(path), bare, boxMedia(bare)}) {
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return path;
}

QString recordingsFolder() { return boxMedia("/media/recordings"); }

QString recordingFile(const QString &name)
{
    const QString cleaned = QDir::cleanPath(name);
    QString file = QFileInfo(cleaned).fileName();
    if (file.isEmpty() || file == "." || file == "..")
        file = "recording";
    if (QFileInfo(file).suffix().isEmpty())
        file += ".ts";
    // What is cleaned and absolute has ".." at its beginning or not at all.
    if (cleaned.startsWith(mediaFolder))
        return boxMedia(QFileInfo(cleaned).path() + '/' + file);
    return recordingsFolder() + '/' + file;
}

QString recordingTasksFile() { return boxMedia("/home/recordings.json"); }
