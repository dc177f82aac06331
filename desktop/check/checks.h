// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/check/walk.h"

#include <functional>
#include <vector>

/** One thing that is asked of a receiver. */
struct Check
{
    QString name;
    /** Heading of the section of docs/receiver-protocol.md that asks for it. */
    const char *section;
    std::function<CheckResult(Walk &)> run;
};

using Checks = std::vector<Check>;

/** All checks in their order; those that judge what was seen in passing come last. */
Checks allChecks();

/*
 * The parts of allChecks().
 */
Checks requestChecks();
Checks commandChecks();
Checks playbackChecks();
Checks streamChecks();
Checks restartChecks();
Checks passingChecks();
