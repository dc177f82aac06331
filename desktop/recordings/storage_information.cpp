// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/storage_information.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStorageInfo>

namespace {

QString labelOf(const QStorageInfo &volume)
{
    if (volume.isRoot())
        return "System";
    return volume.name().isEmpty() ? volume.rootPath().section('/', -1) : volume.name();
}

QJsonObject volumeJson(const QStorageInfo &volume)
{
    return {{"label", labelOf(volume)},
            {"mountPath", volume.rootPath()},
            {"size", volume.bytesTotal()},
            {"freeSize", volume.bytesAvailable()}};
}

bool isDisk(const QStorageInfo &volume)
{
    return volume.isReady() && volume.bytesTotal() > 0 && volume.device().startsWith("/dev/");
}

} // namespace

QString storageInformation()
{
    const QStorageInfo root = QStorageInfo::root();
    QJsonArray volumes = {volumeJson(root)};
    QSet<QByteArray> devices = {root.device()};
    const QList<QStorageInfo> mounted = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : mounted) {
        if (!isDisk(volume) || devices.contains(volume.device()))
            continue;
        devices.insert(volume.device());
        volumes.append(volumeJson(volume));
    }
    return QString::fromUtf8(QJsonDocument(volumes).toJson(QJsonDocument::Compact));
}
