// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The disks of the box as the JSON array text that portals read: each folder of
 * "/media" is one, with sn, vendor, model, label, partitionNum, mountPath (a
 * path of the box), mediaType (1 a disk inside, 2 on USB), size and freeSize
 * (bytes) and isReadOnly. No disk of this machine is among them.
 */
QString storageInformation();
