// SPDX-License-Identifier: Apache-2.0
// Whatever the kept recordings hold: what was read once is written and read again as it is. Then
// any requests of portals.
#include "desktop/recordings/memory_recordings.h"
#include "desktop/recordings/recording_requests.h"
#include "desktop/recordings/recording_time.h"
#include "desktop/recordings/task_list.h"
#include "fuzz/support/input.h"

#include <QJsonDocument>

namespace {

void request(MemoryRecordings &recordings, int kind, const QByteArray &payload)
{
    switch (kind % 8) {
    case 0: createRecording(recordings, payload); break;
    case 1: removeRecording(recordings, payload); break;
    case 2: changeRecordingEnd(recordings, payload); break;
    case 3: setMostRecordings(recordings, payload); break;
    case 4: recordingById(recordings, payload); break;
    case 5: recordingsByIds(recordings, payload); break;
    case 6: recordings.setState(payload.size(), RecordingState::Recording); break;
    default: recordingTime(QString::fromLatin1(payload)); break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QJsonObject kept = QJsonDocument::fromJson(input.line()).object();
    const QJsonObject once = TaskList::fromJson(kept).toJson();
    FUZZ_CHECK(TaskList::fromJson(once).toJson() == once);
    MemoryRecordings recordings;
    while (!input.atEnd()) {
        const int kind = input.byte();
        request(recordings, kind, input.line());
    }
    QJsonParseError error;
    QJsonDocument::fromJson(allRecordings(recordings).toUtf8(), &error);
    FUZZ_CHECK(error.error == QJsonParseError::NoError);
    return 0;
}
