// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/box_media.h"

#include "platform/box_paths.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

namespace {

const char mediaFolder[] = "/media/";

QString withoutParameters(const QString &path) { return path.section('?', 0, 0); }

QString boxMedia(const QString &path) { return BoxPaths::root() + path; }

const QStringList &playedSchemes()
{
    static const QStringList schemes = {"http",   "https", "rtsp",  "rtp",   "udp",
                                        "rtmp",   "rtmpe", "rtmps", "rtmpt", "rtmpte",
                                        "rtmpts", "mms",   "mmsh",  "mmst"};
    return schemes;
}

/** The scheme in small letters, empty for a path. */
QString schemeOf(const QString &address)
{
    static const QRegularExpression scheme("^([A-Za-z][A-Za-z0-9+.-]*):");
    return scheme.match(address).captured(1).toLower();
}

/**
 * The file on this machine for a path of the box, which may also be given as the path on this
 * machine; empty unless it is below the media folder.
 */
QString mediaFile(const QString &path)
{
    const QString cleaned = QDir::cleanPath(path);
    if (path.contains(QChar(0)))
        return QString();
    if (cleaned.startsWith(boxMedia(mediaFolder)))
        return cleaned;
    return cleaned.startsWith(mediaFolder) ? boxMedia(cleaned) : QString();
}

} // namespace

MediaSource mediaSource(const QString &address)
{
    const QString scheme = schemeOf(address);
    if (!scheme.isEmpty() && scheme != "file") {
        if (playedSchemes().contains(scheme))
            return {address, {}};
        return {{}, "a box does not play addresses of " + scheme + ":"};
    }
    const QString path = scheme.isEmpty() ? address : QUrl(address).toLocalFile();
    const QString file = mediaFile(path);
    const QString bare = mediaFile(withoutParameters(path));
    if (file.isEmpty() || bare.isEmpty())
        return {{}, QString("only what lies below %1 is played").arg(mediaFolder)};
    return {QFileInfo::exists(bare) && !QFileInfo::exists(file) ? bare : file, {}};
}

QString networkProtocols()
{
    return "http,https,httpproxy,tcp,tls,udp,udplite,rtp,srtp,rtsp,rtmp,rtmpe,"
           "rtmps,rtmpt,rtmpte,"
           "rtmpts,ffrtmphttp,mmsh,mmst,crypto,hls";
}

QString recordingsFolder() { return boxMedia("/media/recordings"); }

QString recordingFile(const QString &name)
{
    if (name.trimmed().isEmpty())
        return recordingsFolder() + "/recording.ts";
    if (name.endsWith('/') || name.contains(QChar(0)))
        return QString();
    if (QDir::isAbsolutePath(name))
        return mediaFile(name);
    const QString cleaned = QDir::cleanPath(name);
    if (cleaned == "." || cleaned == ".." || cleaned.startsWith("../"))
        return QString();
    const bool hasEnding = !QFileInfo(cleaned).suffix().isEmpty();
    return recordingsFolder() + '/' + cleaned + (hasEnding ? "" : ".ts");
}

QString recordingTasksFile() { return boxMedia("/home/recordings.json"); }
