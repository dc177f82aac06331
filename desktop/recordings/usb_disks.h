// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFileInfo>
#include <QString>

/*
 * Disks that come and go. What such a disk holds stays in the folder "usb" of the root while it is
 * not mounted; mounted, it is a link below "/media", where portals see it.
 */

/** Mounts the disk of this name, an empty one at its first time; why not, empty if it is mounted.
 */
QString mountUsbDisk(const QString &name);

/** Unmounts it and keeps what it holds; why not, empty if it is unmounted. */
QString unmountUsbDisk(const QString &name);

/** Whether this entry of "/media" is a disk on USB: mounted so, or called usb-something. */
bool isUsbDisk(const QFileInfo &entry);
