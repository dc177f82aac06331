// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/recording_requests.h"

#include "desktop/link/payload.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

namespace {

// Each list of recordings repeats the texts; a browser takes no longer address either.
constexpr int longestText = 64 * 1024;

QString compactText(const QJsonArray &array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

QString compactText(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

int createRecording(Recordings &recordings, const QByteArray &payload)
{
    const QJsonObject request = commandObject(payload);
    RecordingTask task;
    task.url = request["url"].toString();
    task.fileName = request["fileName"].toString();
    task.startTime = request["startTime"].toString();
    task.endTime = request["endTime"].toString();
    for (const QString &text : {task.url, task.fileName, task.startTime, task.endTime}) {
        if (text.size() > longestText)
            return RecordingError::badArgument;
    }
    return recordings.create(task);
}

int removeRecording(Recordings &recordings, const QByteArray &payload)
{
    const QJsonObject request = commandObject(payload);
    const int type = request["removeType"].toInt();
    // Whoever sends a type that is not known here loses no file by it.
    const bool isKnown = type >= int(RemoveType::TaskOnly) && type <= int(RemoveType::EveryFile);
    return recordings.remove(request["id"].toInt(),
                             isKnown ? static_cast<RemoveType>(type) : RemoveType::TaskOnly);
}

int changeRecordingEnd(Recordings &recordings, const QByteArray &payload)
{
    const QJsonObject request = commandObject(payload);
    return recordings.changeEndTime(request["id"].toInt(), request["endTime"].toString());
}

int setMostRecordings(Recordings &recordings, const QByteArray &payload)
{
    return recordings.setMaximumCount(commandObject(payload)["maxCnt"].toInt());
}

QString recordingById(const Recordings &recordings, const QByteArray &payload)
{
    const auto task = recordings.byId(commandObject(payload)["id"].toInt());
    return compactText(task ? recordingJson(*task) : QJsonObject());
}

QString recordingsByIds(const Recordings &recordings, const QByteArray &payload)
{
    static const QRegularExpression number("[0-9]+");
    QJsonArray found;
    QSet<int> seen;
    auto matches = number.globalMatch(commandObject(payload)["idList"].toString());
    while (matches.hasNext()) {
        const int id = matches.next().captured().toInt();
        if (seen.contains(id))
            continue;
        seen.insert(id);
        if (const auto task = recordings.byId(id))
            found.append(recordingJson(*task));
    }
    return compactText(found);
}

QString allRecordings(const Recordings &recordings)
{
    QJsonArray tasks;
    const QVector<RecordingTask> all = recordings.all();
    for (const RecordingTask &task : all)
        tasks.append(recordingJson(task));
    return compactText(tasks);
}
