// SPDX-License-Identifier: Apache-2.0
/*
 * What a stream may bring: pieces, much at once, large and unknown frames, nonsense.
 */
#include "desktop/check/checks.h"
#include "desktop/link/payload.h"

#include <QThread>

namespace {

constexpr int manyRequests = 100;
constexpr unsigned long pauseMs = 20;
constexpr int largeText = 1024 * 1024;
// No number of either direction, below, between and above those that are.
constexpr int unknownTypes[] = {0, 1004, 1200 + 77, 2500, -1};

/** Sends bytes and asks whether the receiver still answers. */
CheckResult probeAfter(Walk &walk, const QByteArray &bytes, const QString &what)
{
    if (!walk.session())
        return CheckResult::of(takesNoConnection);
    if (!walk.session()->sendBytes(bytes)) {
        walk.endSession();
        return CheckResult::of(
            QString("The receiver closes the connection at %1, or does not read it.").arg(what));
    }
    Reply reply = walk.probe();
    // It may have closed the connection behind the answer.
    if (reply)
        reply = walk.probe();
    if (!reply)
        walk.endSession();
    return CheckResult::of(reply ? QString() : QString("After %1: %2").arg(what, reply.fault));
}

CheckResult checkUnknown(Walk &walk)
{
    CheckResult result;
    for (const int type : unknownTypes) {
        for (const QByteArray &payload : {QByteArray(), QByteArray("vesprel\0", 8)}) {
            result.faults +=
                probeAfter(
                    walk, commandFrame(type, payload),
                    QString("a command of type %1 with %2 bytes").arg(type).arg(payload.size()))
                    .faults;
            if (!result.faults.isEmpty())
                return result;
        }
    }
    return result;
}

CheckResult checkPieces(Walk &walk)
{
    const QByteArray frame = walk.probeFrame();
    // One byte, a piece of the header, the whole header, all but the last byte.
    for (const int size : {1, 7, 12, frame.size() - 1}) {
        if (size >= frame.size())
            continue;
        if (const QString fault = walk.restart(); !fault.isEmpty())
            return CheckResult::of(fault);
        Session &session = *walk.session();
        session.sendBytes(frame.left(size));
        QThread::msleep(pauseMs);
        session.sendBytes(frame.mid(size));
        const Reply reply = session.await(walk.probeCommand());
        if (!reply) {
            walk.endSession();
            return CheckResult::of(QString("A request in two pieces, the first of %1 bytes: %2")
                                       .arg(size)
                                       .arg(reply.fault));
        }
    }
    return {};
}

CheckResult checkSeveral(Walk &walk)
{
    if (const QString fault = walk.restart(); !fault.isEmpty())
        return CheckResult::of(fault);
    const QByteArray screen =
        commandFrame(static_cast<int>(Command::VirtualScreen), integerPayload(initialScreenWidth));
    walk.session()->sendBytes(screen.repeated(4) + walk.probeFrame());
    const Reply reply = walk.session()->await(walk.probeCommand());
    if (!reply)
        walk.endSession();
    return CheckResult::of(reply ? QString() : "A request behind four commands: " + reply.fault);
}

CheckResult checkLarge(Walk &walk)
{
    if (!walk.answers(Command::PvrGetTasksByIds))
        return CheckResult::skip("1907, which may be large, is not answered as it should.");
    const QByteArray ids = QByteArray("123456789,").repeated(largeText / 10);
    if (const QString fault = walk.restart(); !fault.isEmpty())
        return CheckResult::of(fault);
    const Reply reply =
        walk.session()->request(Command::PvrGetTasksByIds, "{\"idList\":\"" + ids + "1\"}");
    if (!reply)
        walk.endSession();
    return CheckResult::of(
        reply ? QString()
              : QString("A request with %1 bytes of text: %2").arg(ids.size()).arg(reply.fault));
}

CheckResult checkNonsense(Walk &walk)
{
    const std::pair<Command, QByteArray> requests[] = {
        {Command::PvrCreateTask, R"({"endTime":"","fileName":"","startTime":"","url":""})"},
        {Command::PvrChangeEndTime, R"({"endTime":"soon","id":-1})"},
        {Command::PvrGetTaskById, R"({"id":-1})"},
        {Command::PvrGetTasksByIds, R"({"idList":"x"})"},
        {Command::PvrRemoveTask, R"({"id":-1,"removeType":-1})"}};
    CheckResult result;
    for (const auto &[request, payload] : requests) {
        if (!walk.answers(request))
            continue;
        Session *session = walk.session();
        if (!session)
            return CheckResult::of(takesNoConnection);
        const Reply reply = session->request(request, payload);
        if (reply)
            continue;
        walk.endSession();
        result.faults += QString("%1 with %2: %3")
                             .arg(static_cast<int>(request))
                             .arg(QString::fromLatin1(payload), reply.fault);
    }
    for (const Command command : {Command::MediaSeek, Command::AudioTrack, Command::SubtitleTrack,
                                  Command::SetAspect, Command::ViewPort}) {
        const int type = static_cast<int>(command);
        for (const QByteArray &payload : {QByteArray(), integerPayload(-1)})
            result.faults += probeAfter(walk, commandFrame(type, payload),
                                        QString("%1 with %2 bytes").arg(type).arg(payload.size()))
                                 .faults;
    }
    return result;
}

/** So many that it shows when header and payload are written apart. */
CheckResult checkMany(Walk &walk)
{
    if (const QString fault = walk.restart(); !fault.isEmpty())
        return CheckResult::of(fault);
    walk.session()->readByWrites();
    int torn = 0;
    for (int count = 1; count <= manyRequests; ++count) {
        const Reply reply = walk.probe();
        if (!reply) {
            walk.endSession();
            return CheckResult::of(
                QString("Of %1 requests in a row the last one: %2").arg(count).arg(reply.fault));
        }
        torn += reply.isTorn ? 1 : 0;
    }
    walk.endSession();
    if (torn > manyRequests / 2)
        walk.findings.note(Finding::Pieces, QString("Of %1 answers in a row %2 came as a header "
                                                    "and, in another write, a payload.")
                                                .arg(manyRequests)
                                                .arg(torn));
    return {};
}

Check withProbe(const char *name, const char *section, CheckResult (*run)(Walk &))
{
    return {name, section,
            [run](Walk &walk) { return walk.hasProbe() ? run(walk) : CheckResult::skip(noProbe); }};
}

} // namespace

Checks streamChecks()
{
    return {withProbe("passes over unknown commands", "Unknown types", checkUnknown),
            withProbe("takes a command in pieces", "Commands in pieces", checkPieces),
            withProbe("takes several commands at once", "Commands in pieces", checkSeveral),
            withProbe("takes large commands", "Large commands", checkLarge),
            withProbe("lives with commands that make no sense", "Broken commands", checkNonsense),
            withProbe("answers many requests in a row", "Every request", checkMany)};
}
