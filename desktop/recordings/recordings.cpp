// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/recordings.h"

QJsonObject recordingJson(const RecordingTask &task)
{
    return {{"id", task.id},
            {"url", task.url},
            {"fileName", task.fileName},
            {"startTime", task.startTime},
            {"endTime", task.endTime},
            {"state", static_cast<int>(task.state)},
            {"errorCode", task.errorCode}};
}
