// SPDX-License-Identifier: Apache-2.0
/*
 * The program ends, in the worst moments, and is started again.
 */
#include "desktop/check/checks.h"

namespace {

constexpr int restarts = 3;
// Several, since the first write to a closed connection may still go through.
constexpr int requestsAtEnd = 3;
constexpr int portalMs = 3000;

CheckResult probeAfterRestart(Walk &walk, const QString &what)
{
    QString fault = walk.restart();
    if (fault.isEmpty())
        fault = walk.hasProbe() ? walk.probe().fault : QString();
    if (!fault.isEmpty())
        walk.endSession();
    return CheckResult::of(fault.isEmpty() ? fault : QString("After %1: %2").arg(what, fault));
}

CheckResult checkRestarts(Walk &walk)
{
    for (int count = 0; count < restarts; ++count) {
        const CheckResult result = probeAfterRestart(walk, "a restart");
        if (!result.faults.isEmpty())
            return result;
    }
    return {};
}

CheckResult checkHalfCommand(Walk &walk)
{
    const QByteArray frame =
        commandFrame(static_cast<int>(Command::RunApp), "vesprel-receiver-check");
    // In the header, behind it, in the payload, and one that would never end.
    for (const QByteArray &part :
         {frame.left(5), frame.left(12), frame.left(20),
          frame.left(8) + QByteArray::fromHex("7ffffff0"), frame.left(8) + QByteArray(4, '\xff')}) {
        if (!walk.session())
            return CheckResult::of(takesNoConnection);
        walk.session()->sendBytes(part);
        const CheckResult result = probeAfterRestart(
            walk, QString("an end within a command, at its byte %1").arg(part.size()));
        if (!result.faults.isEmpty())
            return result;
    }
    return {};
}

CheckResult checkNobodyReads(Walk &walk)
{
    if (!walk.hasProbe())
        return CheckResult::skip(noProbe);
    for (int count = 0; count < restarts; ++count) {
        Session *session = walk.session();
        if (!session)
            return CheckResult::of(takesNoConnection);
        // Closed before the first of them, and before the receiver has answered the last.
        if (count == 0)
            session->closeEvents();
        for (int request = 0; request < requestsAtEnd; ++request)
            session->sendBytes(walk.probeFrame());
        session->closeEvents();
        const CheckResult result =
            probeAfterRestart(walk, "an end with an answer on its way, which nobody reads");
        if (!result.faults.isEmpty())
            return result;
    }
    return {};
}

CheckResult checkPortal(Walk &walk)
{
    if (!walk.announcesPortal)
        return CheckResult::skip("The receiver told the first program no portal.");
    if (const QString fault = walk.restart(); !fault.isEmpty())
        return CheckResult::of(fault);
    const bool came =
        walk.session()->listen(portalMs, [](Event event) { return event == Event::NewPortal; });
    return CheckResult::of(
        came ? QString() : "The first program was told its portal (1000), a later one was not.");
}

} // namespace

Checks restartChecks()
{
    return {
        {"serves a program that was started again", "Restart of Vesprel", checkRestarts},
        {"lives through an end within a command", "Restart of Vesprel", checkHalfCommand},
        {"lives through an end with an answer on its way", "Restart of Vesprel", checkNobodyReads},
        {"tells each program its portal", "Portal after a restart", checkPortal}};
}
