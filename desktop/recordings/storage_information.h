// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The storage of this machine as portals read it: the text of a JSON array of objects with label,
 * mountPath, size and freeSize (bytes). The root comes first; file systems that only exist in
 * memory are left out, and a device that is mounted several times is listed once.
 */
QString storageInformation();
