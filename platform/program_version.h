// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * What runs: "NAME VERSION, build COMMIT", the commit marked "-dirty" if the sources differed
 * from it; without the build where it was made outside of git. Any thread.
 */
QString programVersion(const QString &name);
