#pragma once

#include "desktop/recordings.h"

/** Recording tasks that live as long as the program; nothing is recorded. */
class MemoryRecordings : public Recordings
{
public:
    int create(const RecordingTask &task) override;
    int remove(int id) override;
    int changeEndTime(int id, const QString &endTime) override;
    int setMaximumCount(int count) override;
    void setState(int id, RecordingState state) override;
    QVector<RecordingTask> all() const override { return m_tasks; }
    std::optional<RecordingTask> byId(int id) const override;

private:
    int indexOf(int id) const;
    int openTasks() const;

    QVector<RecordingTask> m_tasks;
    int m_nextId = 1;
    int m_maximumCount = 100;
};
