// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/recordings/recorder.h"
#include "desktop/recordings/recordings.h"
#include "desktop/recordings/task_list.h"

#include <QTimer>

#include <map>
#include <memory>

/**
 * Recording tasks that are kept in a file and carried out with ffmpeg. Both times must be known
 * to recordingTime(); an empty start is now. A recording that the end of the program interrupts
 * goes on in a second file when the program is back before the task's end.
 */
class FfmpegRecordings : public Recordings
{
    Q_OBJECT

public:
    explicit FfmpegRecordings(const RecorderOptions &options = {}, QObject *parent = nullptr);

    /** Ends all recordings gently; their tasks stay as they are. */
    ~FfmpegRecordings() override;

    void restore() override;
    int create(const RecordingTask &task) override;
    int remove(int id, RemoveType type) override;
    int changeEndTime(int id, const QString &endTime) override;
    int setMaximumCount(int count) override;
    void setState(int id, RecordingState state) override;
    QVector<RecordingTask> all() const override { return m_tasks.all(); }
    std::optional<RecordingTask> byId(int id) const override { return m_tasks.byId(id); }

private:
    void save();
    void carryOut();
    void begin(const RecordingTask &task);
    void noteStart(int id);
    void noteEnd(int id, const QString &failure);
    int refusal(const RecordingTask &task);
    void fail(int id, int errorCode, const QString &reason);
    void endRecorder(int id);

    RecorderOptions m_options;
    TaskList m_tasks;
    std::map<int, std::unique_ptr<Recorder>> m_recorders;
    QTimer m_timer;
};
