// SPDX-License-Identifier: Apache-2.0
/*
 * The connections, and the eight requests.
 */
#include "desktop/check/checks.h"
#include "desktop/link/payload.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr int announcementMs = 1000;
constexpr char taskName[] = "vesprel-receiver-check";
constexpr int mostRecordings = 10;
constexpr int removeEveryFile = 3;
constexpr int noTask = -1;

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString secondsFromNow(int seconds)
{
    return QString::number(QDateTime::currentSecsSinceEpoch() + seconds);
}

QByteArray requestPayload(Command request, const Walk &walk)
{
    constexpr int day = 86400;
    const int id = walk.recording.value_or(noTask);
    switch (request) {
    case Command::PvrCreateTask:
        return json({{"url", "http://127.0.0.1:9/" + QString(taskName)},
                     {"fileName", taskName},
                     {"startTime", secondsFromNow(2 * day)},
                     {"endTime", secondsFromNow(2 * day + 60)}});
    case Command::PvrRemoveTask: return json({{"id", id}, {"removeType", removeEveryFile}});
    case Command::PvrChangeEndTime:
        return json({{"endTime", secondsFromNow(2 * day + 120)}, {"id", id}});
    case Command::PvrGetTaskById: return json({{"id", id}});
    case Command::PvrGetTasksByIds: return json({{"idList", QString("[%1]").arg(id)}});
    case Command::PvrSetMaxRecordingCount: return json({{"maxCnt", mostRecordings}});
    default: return {};
    }
}

CheckResult checkConnections(Walk &walk)
{
    // The one that looked for the receiver, who may tell its portal only once.
    Session *session = walk.session();
    if (!session)
        return CheckResult::of(walk.fault());
    walk.announcesPortal =
        session->listen(announcementMs, [](Event event) { return event == Event::NewPortal; });
    if (!session->isOpen())
        return CheckResult::of("The receiver closes a connection on which nothing was wrong.");
    return {};
}

CheckResult checkRequest(Walk &walk, Command request)
{
    if (!walk.session())
        return CheckResult::of(takesNoConnection);
    const QByteArray payload = requestPayload(request, walk);
    const Reply reply = walk.session()->request(request, payload);
    if (!reply) {
        // A late answer is not to be taken for that of the next request.
        walk.endSession();
        return CheckResult::of(reply.fault);
    }
    if (request == Command::PvrCreateTask && integerAt(reply.payload, 0) >= 0)
        walk.recording = integerAt(reply.payload, 0);
    walk.noteAnswered(request, payload);
    return {};
}

Check requestCheck(Command request)
{
    return {QString("answers %1, %2")
                .arg(static_cast<int>(request))
                .arg(QString(findCommand(static_cast<int>(request))->words).replace("%1", "...")),
            "Every request", [request](Walk &walk) { return checkRequest(walk, request); }};
}

} // namespace

Checks requestChecks()
{
    Checks checks = {{"takes two connections", "Order of connections", checkConnections}};
    // The task is made before it is asked for, and removed at the end.
    for (const Command request :
         {Command::PvrGetAllTasks, Command::GetStorageInfo, Command::PvrSetMaxRecordingCount,
          Command::PvrCreateTask, Command::PvrChangeEndTime, Command::PvrGetTaskById,
          Command::PvrGetTasksByIds, Command::PvrRemoveTask})
        checks.push_back(requestCheck(request));
    return checks;
}
