// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * What runs: "vesprel VERSION, build COMMIT", the commit marked "-dirty" if the sources differed
 * from it; without the build where it was made outside of git. Any thread.
 */
QString programVersion();
