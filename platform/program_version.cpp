// SPDX-License-Identifier: Apache-2.0
#include "platform/program_version.h"

#include "build_commit.h"

QString programVersion(const QString &name)
{
    const QString version = name + " " VESPREL_VERSION;
    const QString commit = VESPREL_BUILD_COMMIT;
    return commit.isEmpty() ? version : version + ", build " + commit;
}
