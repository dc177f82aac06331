// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/storage_information.h"

#include "desktop/recordings/usb_disks.h"
#include "platform/box_paths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStorageInfo>

namespace {

enum class MediaType { Inside = 1, Usb = 2 };

/** A number that a disk of this name always has. */
QString serialNumber(const QString &name)
{
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Md5);
    return QString::fromLatin1(hash.toHex().left(12).toUpper());
}

QJsonObject diskJson(const QFileInfo &folder)
{
    const QString name = folder.fileName();
    const bool isUsb = isUsbDisk(folder);
    const QStorageInfo volume(folder.canonicalFilePath());
    return {{"sn", serialNumber(name)},
            {"vendor", "Vesprel"},
            {"model", isUsb ? "USB disk" : "Disk"},
            {"label", name},
            {"partitionNum", 1},
            {"mountPath", "/media/" + name},
            {"mediaType", int(isUsb ? MediaType::Usb : MediaType::Inside)},
            {"size", volume.bytesTotal()},
            {"freeSize", volume.bytesAvailable()},
            {"isReadOnly", volume.isReadOnly() || !folder.isWritable()}};
}

} // namespace

QString storageInformation()
{
    QJsonArray disks;
    const QDir media(BoxPaths::root() + "/media");
    const QFileInfoList folders =
        media.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &folder : folders)
        disks.append(diskJson(folder));
    return QString::fromUtf8(QJsonDocument(disks).toJson(QJsonDocument::Compact));
}
