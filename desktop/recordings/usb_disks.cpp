// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/usb_disks.h"

#include "platform/box_paths.h"

#include <QDir>
#include <QFile>

namespace {

QString mountPoint(const QString &name) { return BoxPaths::root() + "/media/" + name; }

QString contents(const QString &name) { return BoxPaths::root() + "/usb/" + name; }

bool isMounted(const QFileInfo &entry)
{
    return entry.isSymLink() && entry.symLinkTarget() == contents(entry.fileName());
}

QString nameFailure(const QString &name)
{
    if (name.startsWith('.') || name.contains('/') || name.contains(QChar(0)))
        return "A disk's name has no \"/\" and does not begin with \".\".";
    return QString();
}

} // namespace

QString mountUsbDisk(const QString &name)
{
    const QString failure = nameFailure(name);
    if (!failure.isEmpty())
        return failure;
    const QString point = mountPoint(name);
    if (isMounted(QFileInfo(point)))
        return QString("%1 is mounted already.").arg(name);
    if (QFileInfo(point).isSymLink() || QFileInfo::exists(point))
        return QString("%1 is there already.").arg(point);
    QDir().mkpath(contents(name));
    QDir().mkpath(mountPoint(QString()));
    return QFile::link(contents(name), point) ? QString() : QString("Cannot make %1.").arg(point);
}

QString unmountUsbDisk(const QString &name)
{
    const QFileInfo point(mountPoint(name));
    if (!nameFailure(name).isEmpty() || !isMounted(point))
        return QString("No disk %1 was mounted here.").arg(name);
    return QFile::remove(point.filePath()) ? QString()
                                           : QString("Cannot remove %1.").arg(point.filePath());
}

bool isUsbDisk(const QFileInfo &entry)
{
    return isMounted(entry) || entry.fileName().startsWith("usb", Qt::CaseInsensitive);
}
