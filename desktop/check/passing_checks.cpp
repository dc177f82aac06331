// SPDX-License-Identifier: Apache-2.0
/*
 * What was seen in passing during all other checks.
 */
#include "desktop/check/checks.h"

namespace {

Check passing(const char *name, const char *section, Finding finding)
{
    return {name, section, [finding](Walk &walk) {
                return CheckResult{walk.findings.of(finding), QString()};
            }};
}

} // namespace

Checks passingChecks()
{
    return {
        passing("sends nothing on the connection for commands", "Second connection",
                Finding::OtherConnection),
        passing("sends the magic", "Header", Finding::Magic),
        passing("writes each message at once", "One write", Finding::Pieces),
        passing("sends no payload that is too large", "Large frames", Finding::TooLarge),
        passing("sends messages of the tables only", "Unknown types", Finding::UnknownType),
        passing("sends events in their form", "Events: receiver to Vesprel", Finding::EventForm),
        passing("answers once, and only what was asked", "Once", Finding::UnaskedAnswer),
        passing("does not flood", "How much at once", Finding::Flood),
    };
}

Checks allChecks()
{
    Checks all;
    for (const Checks &part : {requestChecks(), commandChecks(), playbackChecks(), streamChecks(),
                               restartChecks(), passingChecks()})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}
